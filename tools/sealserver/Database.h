// Database.h - SQLite's database and statements, each given back at its end.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

// What SQLite says about a failure; of what was asked nothing has happened.
class DatabaseFailure : public std::runtime_error {
public:
    DatabaseFailure(int code, const std::string& text) : std::runtime_error(text), m_code(code) {}
    // Another row has what may stand there once.
    bool IsConflict() const { return m_code == SQLITE_CONSTRAINT_UNIQUE; }

private:
    int m_code;
};

// An open file. Waits up to five seconds for what another process writes.
class Database {
public:
    // `path` in UTF-8 on Windows, the file system's bytes elsewhere. The file is made if there is
    // none, and then for its owner alone where the system knows such rights.
    explicit Database(const std::string& path);

    // One or several statements without parameters and results.
    void Execute(const char* sql);
    std::int64_t LastRow() const { return sqlite3_last_insert_rowid(m_handle.get()); }
    int Changes() const { return sqlite3_changes(m_handle.get()); }

private:
    friend class Statement;
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    };

    std::unique_ptr<sqlite3, Close> m_handle;
};

// One statement, run once. Parameters are bound in their order; texts are UTF-8.
class Statement {
public:
    Statement(Database& database, const char* sql);

    Statement& Text(std::string_view value);
    Statement& Bytes(std::string_view value);
    Statement& Number(std::int64_t value);

    // Goes to the next row; false behind the last one.
    bool Step();
    // For a statement without rows.
    void Run() { Step(); }

    // Of the row, columns from 0. Text or bytes; empty for NULL.
    std::string Column(int index) const;
    std::int64_t NumberColumn(int index) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    void Check(int code) const;

    sqlite3* m_database;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
    int m_bound = 0;
};
