#include "tools/sealserver/SealStore.h"

#include <set>

namespace {

// "VSea": tells the file from those of other programs.
constexpr std::int64_t kApplication = 0x56536561;
constexpr std::int64_t kVersion = 1;

constexpr char kTables[] =
    "BEGIN IMMEDIATE;"
    "CREATE TABLE certificates ("
    "  id INTEGER PRIMARY KEY AUTOINCREMENT, serial TEXT NOT NULL, serial_key TEXT NOT NULL,"
    "  name TEXT NOT NULL, der BLOB NOT NULL, UNIQUE (serial_key, name));"
    "CREATE TABLE seals ("
    "  id INTEGER PRIMARY KEY AUTOINCREMENT,"
    "  certificate INTEGER NOT NULL REFERENCES certificates ON DELETE CASCADE,"
    "  number TEXT NOT NULL, name TEXT NOT NULL, form TEXT NOT NULL, seal_id TEXT NOT NULL,"
    "  hash TEXT NOT NULL, suspended INTEGER NOT NULL DEFAULT 0,"
    "  added TEXT NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%SZ', 'now')), file BLOB NOT NULL,"
    "  UNIQUE (certificate, number));"
    "CREATE INDEX seals_by_seal_id ON seals (seal_id);"
    "CREATE TABLE settings (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;"
    "PRAGMA application_id = 1448306017;"
    "PRAGMA user_version = 1;"
    "COMMIT;";
static_assert(kApplication == 1448306017);

constexpr char kSealColumns[] =
    "SELECT id, certificate, number, name, form, seal_id, hash, suspended, added";

std::int64_t NumberOf(Database& database, const char* sql) {
    Statement statement(database, sql);
    return statement.Step() ? statement.NumberColumn(0) : 0;
}

// Two processes may come to a new file at the same time; the second one finds the tables made.
void MakeTables(Database& database) {
    if (NumberOf(database, "SELECT count(*) FROM sqlite_master") != 0) return;
    try {
        database.Execute(kTables);
    } catch (const DatabaseFailure&) {
        if (NumberOf(database, "PRAGMA application_id") != kApplication) throw;
        database.Execute("ROLLBACK");
    }
}

StoredCertificate ReadCertificate(const Statement& row) {
    return {row.NumberColumn(0), row.Column(1), row.Column(2), row.Column(3)};
}

StoredSeal ReadSeal(const Statement& row) {
    StoredSeal seal;
    seal.id = row.NumberColumn(0);
    seal.certificate = row.NumberColumn(1);
    seal.number = row.Column(2);
    seal.name = row.Column(3);
    seal.form = row.Column(4);
    seal.sealId = row.Column(5);
    seal.hash = row.Column(6);
    seal.suspended = row.NumberColumn(7) != 0;
    seal.added = row.Column(8);
    return seal;
}

std::optional<StoredCertificate> FirstCertificate(Statement& rows) {
    if (!rows.Step()) return std::nullopt;
    return ReadCertificate(rows);
}

std::optional<StoredSeal> FirstSealWithFile(Statement& rows) {
    if (!rows.Step()) return std::nullopt;
    StoredSeal seal = ReadSeal(rows);
    seal.file = rows.Column(9);
    return seal;
}

constexpr char kFindCertificate[] =
    "SELECT id, serial, name, der FROM certificates WHERE serial_key = ? AND name = ?";

}  // namespace

const char* SealStatusText(SealStatus status) {
    switch (status) {
        case SealStatus::kValid: return "valid";
        case SealStatus::kSuspended: return "suspended";
        case SealStatus::kReplaced: return "replaced";
        case SealStatus::kUnknown: return "unknown";
    }
    return "";
}

std::string SerialKey(std::string_view serial) {
    std::string key;
    for (const char c : serial) {
        if (c == ' ' || c == ':' || c == '-' || (c == '0' && key.empty())) continue;
        key += c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return key;
}

SealStore::SealStore(const std::string& path) : m_database(path) {
    m_database.Execute("PRAGMA foreign_keys = ON; PRAGMA secure_delete = ON;");
    MakeTables(m_database);
    if (NumberOf(m_database, "PRAGMA application_id") != kApplication ||
        NumberOf(m_database, "PRAGMA user_version") != kVersion) {
        throw std::runtime_error("the database is of another program or of another version");
    }
}

std::vector<StoredCertificate> SealStore::Certificates() {
    const Lock lock(m_mutex);
    Statement rows(m_database, "SELECT id, serial, name, der FROM certificates ORDER BY id");
    std::vector<StoredCertificate> certificates;
    while (rows.Step()) certificates.push_back(ReadCertificate(rows));
    return certificates;
}

std::optional<StoredCertificate> SealStore::Certificate(std::int64_t id) {
    const Lock lock(m_mutex);
    Statement rows(m_database, "SELECT id, serial, name, der FROM certificates WHERE id = ?");
    return FirstCertificate(rows.Number(id));
}

std::optional<StoredCertificate> SealStore::FindCertificate(const std::string& serial,
                                                            const std::string& name) {
    const Lock lock(m_mutex);
    Statement rows(m_database, kFindCertificate);
    return FirstCertificate(rows.Text(SerialKey(serial)).Text(name));
}

// What is there is written anew with what it had: only a row that is written is told.
std::int64_t SealStore::AddCertificate(const StoredCertificate& certificate) {
    const Lock lock(m_mutex);
    Statement added(m_database,
                    "INSERT INTO certificates (serial, serial_key, name, der) VALUES (?, ?, ?, ?)"
                    " ON CONFLICT DO UPDATE SET der = iif(der = x'', excluded.der, der)"
                    " RETURNING id");
    added.Text(certificate.serial)
        .Text(SerialKey(certificate.serial))
        .Text(certificate.name)
        .Bytes(certificate.der);
    const std::int64_t id = added.Step() ? added.NumberColumn(0) : 0;
    // It is in the file, or refused, behind its last row.
    added.Run();
    return id;
}

bool SealStore::RemoveCertificate(std::int64_t id) {
    const Lock lock(m_mutex);
    Statement(m_database, "DELETE FROM certificates WHERE id = ?").Number(id).Run();
    return m_database.Changes() > 0;
}

std::vector<StoredSeal> SealStore::Seals(std::int64_t certificate) {
    const Lock lock(m_mutex);
    const std::string sql =
        std::string(kSealColumns) + " FROM seals WHERE certificate = ? ORDER BY id";
    Statement rows(m_database, sql.c_str());
    rows.Number(certificate);
    std::vector<StoredSeal> seals;
    while (rows.Step()) seals.push_back(ReadSeal(rows));
    return seals;
}

std::optional<StoredSeal> SealStore::Seal(std::int64_t id) {
    const Lock lock(m_mutex);
    const std::string sql = std::string(kSealColumns) + ", file FROM seals WHERE id = ?";
    Statement rows(m_database, sql.c_str());
    return FirstSealWithFile(rows.Number(id));
}

std::optional<StoredSeal> SealStore::FindSeal(std::int64_t certificate, const std::string& number) {
    const Lock lock(m_mutex);
    const std::string sql =
        std::string(kSealColumns) + ", file FROM seals WHERE certificate = ? AND number = ?";
    Statement rows(m_database, sql.c_str());
    return FirstSealWithFile(rows.Number(certificate).Text(number));
}

std::optional<std::string> SealStore::NumberOfFile(std::int64_t certificate,
                                                   const std::string& hash) {
    const Lock lock(m_mutex);
    Statement rows(m_database,
                   "SELECT number FROM seals WHERE certificate = ? AND hash = ? ORDER BY id");
    if (!rows.Number(certificate).Text(hash).Step()) return std::nullopt;
    return rows.Column(0);
}

std::string SealStore::FirstFreeNumber(std::int64_t certificate) {
    const Lock lock(m_mutex);
    Statement rows(m_database, "SELECT number FROM seals WHERE certificate = ?");
    rows.Number(certificate);
    std::set<std::string> taken;
    while (rows.Step()) taken.insert(rows.Column(0));
    int number = 1;
    while (taken.contains(std::to_string(number))) ++number;
    return std::to_string(number);
}

std::int64_t SealStore::AddSeal(const StoredSeal& seal) {
    const Lock lock(m_mutex);
    Statement(m_database,
              "INSERT INTO seals (certificate, number, name, form, seal_id, hash, suspended, file)"
              " VALUES (?, ?, ?, ?, ?, ?, ?, ?)")
        .Number(seal.certificate)
        .Text(seal.number)
        .Text(seal.name)
        .Text(seal.form)
        .Text(seal.sealId)
        .Text(seal.hash)
        .Number(seal.suspended ? 1 : 0)
        .Bytes(seal.file)
        .Run();
    return m_database.LastRow();
}

bool SealStore::SetSuspended(std::int64_t id, bool suspended) {
    const Lock lock(m_mutex);
    Statement(m_database, "UPDATE seals SET suspended = ? WHERE id = ?")
        .Number(suspended ? 1 : 0)
        .Number(id)
        .Run();
    return m_database.Changes() > 0;
}

bool SealStore::RemoveSeal(std::int64_t id) {
    const Lock lock(m_mutex);
    Statement(m_database, "DELETE FROM seals WHERE id = ?").Number(id).Run();
    return m_database.Changes() > 0;
}

// The question names no certificate, so a seal that is suspended for one of them is refused to all.
SealStatus SealStore::StatusOf(const std::string& sealId, const std::string& hash) {
    const Lock lock(m_mutex);
    if (sealId.empty()) return SealStatus::kUnknown;
    Statement rows(
        m_database,
        "SELECT count(*), ifnull(sum(hash = ?1), 0), ifnull(sum(hash = ?1 AND suspended), 0)"
        " FROM seals WHERE seal_id = ?2");
    rows.Text(hash).Text(sealId);
    if (!rows.Step() || rows.NumberColumn(0) == 0) return SealStatus::kUnknown;
    if (rows.NumberColumn(1) == 0) return SealStatus::kReplaced;
    return rows.NumberColumn(2) == 0 ? SealStatus::kValid : SealStatus::kSuspended;
}

std::string SealStore::Setting(const std::string& name) {
    const Lock lock(m_mutex);
    Statement rows(m_database, "SELECT value FROM settings WHERE name = ?");
    return rows.Text(name).Step() ? rows.Column(0) : std::string();
}

void SealStore::SetSetting(const std::string& name, const std::string& value) {
    const Lock lock(m_mutex);
    Statement(m_database, "INSERT OR REPLACE INTO settings (name, value) VALUES (?, ?)")
        .Text(name)
        .Text(value)
        .Run();
}
