// Part of every DLL. The C++ library that is linked into it takes 73 KB for exceptions that are
// thrown without memory, and gives them back to nobody: a host that loads and unloads the DLL would
// lose them each time.

namespace __gnu_cxx {
// Frees that memory; meant for programs that look for leaks.
void __freeres();
}  // namespace __gnu_cxx

namespace {

struct ExceptionPool {
    ~ExceptionPool() { __gnu_cxx::__freeres(); }
};

// The first to be made is the last to go.
[[gnu::init_priority(101)]] const ExceptionPool g_exceptionPool;

}  // namespace
