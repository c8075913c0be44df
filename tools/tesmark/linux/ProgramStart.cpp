#include "ProgramStart.h"

ProgramStart::ProgramStart(int argumentCount, char** arguments)
    : m_arguments(arguments, arguments + argumentCount) {}

ProgramStart::~ProgramStart() = default;
