#include "tools/sealserver/Database.h"

#include "tools/sealserver/PrivateFile.h"

namespace {

constexpr int kWaitMs = 5000;

[[noreturn]] void Fail(sqlite3* database, int code) {
    const char* const told = database ? sqlite3_errmsg(database) : sqlite3_errstr(code);
    throw DatabaseFailure(code, std::string("the database: ") + told);
}

}  // namespace

Database::Database(const std::string& path) {
    // SQLite's own files beside it get its rights; it makes none itself, for it knows the umask's.
    MakePrivateFile(path);
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr);
    m_handle.reset(handle);
    if (code != SQLITE_OK) Fail(handle, code);
    sqlite3_extended_result_codes(handle, 1);
    sqlite3_busy_timeout(handle, kWaitMs);
}

void Database::Execute(const char* sql) {
    const int code = sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) Fail(m_handle.get(), code);
}

Statement::Statement(Database& database, const char* sql) : m_database(database.m_handle.get()) {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(m_database, sql, -1, &statement, nullptr));
    m_statement.reset(statement);
}

void Statement::Check(int code) const {
    if (code != SQLITE_OK) Fail(m_database, code);
}

Statement& Statement::Text(std::string_view value) {
    Check(sqlite3_bind_text64(m_statement.get(), ++m_bound, value.data(), value.size(),
                              SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

// No bytes are still a value, which a null pointer would not be.
Statement& Statement::Bytes(std::string_view value) {
    Check(sqlite3_bind_blob64(m_statement.get(), ++m_bound, value.empty() ? "" : value.data(),
                              value.size(), SQLITE_TRANSIENT));
    return *this;
}

Statement& Statement::Number(std::int64_t value) {
    Check(sqlite3_bind_int64(m_statement.get(), ++m_bound, value));
    return *this;
}

bool Statement::Step() {
    const int code = sqlite3_step(m_statement.get());
    if (code == SQLITE_ROW) return true;
    if (code != SQLITE_DONE) Fail(m_database, code);
    return false;
}

std::string Statement::Column(int index) const {
    const void* const bytes = sqlite3_column_blob(m_statement.get(), index);
    const int size = sqlite3_column_bytes(m_statement.get(), index);
    if (!bytes || size <= 0) return {};
    return std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

std::int64_t Statement::NumberColumn(int index) const {
    return sqlite3_column_int64(m_statement.get(), index);
}
