#include "nuclide/database.h"

#include <sqlite3.h>

#include <array>
#include <chrono>

#include "base/byte_reader.h"
#include "base/child_process.h"
#include "base/input_file.h"
#include "base/runtime_fault.h"
#include "nuclide/database_schema.h"
#include "nuclide/queries.h"

namespace kestrel {
namespace {

constexpr std::string_view fileName = "nuc2k.mdb";
constexpr std::string_view sqliteMark{"SQLite format 3\0", 16};
constexpr std::size_t jetMarkOffset = 4;
// Access writes "Standard Jet DB" up to the version of 2003 and "Standard ACE DB" later.
constexpr std::array<std::string_view, 2> jetMarks = {"Standard Jet DB", "Standard ACE DB"};
constexpr std::size_t markSize = 32;

constexpr ChildLimits readerLimits{.time = std::chrono::seconds(20),
                                   .output = std::size_t{512} << 20};

enum class FileKind { Sqlite, Jet };

FileKind kindOf(const std::string& path) {
    InputFile file(path);
    const std::vector<std::byte> front = file.readFront(markSize);
    if (front.empty())
        throw DatabaseError("the file is empty");
    const ByteReader bytes(front);
    if (bytes.textAt(0, sqliteMark.size()) == sqliteMark)
        return FileKind::Sqlite;
    for (const std::string_view mark : jetMarks) {
        if (bytes.textAt(jetMarkOffset, mark.size()) == mark)
            return FileKind::Jet;
    }
    throw DatabaseError("it is neither an Access nor an SQLite database");
}

std::string convertJet(const std::string& reader, const std::string& path) {
    using End = ChildResult::End;
    ChildResult result = runChild({reader, path}, readerLimits);
    switch (result.end) {
        case End::NotStarted:
            throw DatabaseError("the program that reads Access databases is missing: " + reader);
        case End::Crashed:
            throw DatabaseError("the file is damaged (reading it failed)");
        case End::TookTooLong:
            throw DatabaseError("the file is damaged (reading it does not come to an end)");
        case End::WroteTooMuch:
            throw DatabaseError("the database is too large");
        case End::Exited:
            break;
    }
    if (result.exitCode == 0)
        return std::move(result.output);
    throw DatabaseError(result.exitCode == 1 && !result.output.empty()
                            ? result.output
                            : "the file is damaged (reading it failed)");
}

std::unique_ptr<SqliteConnection> connect(const std::string& reader, const std::string& path) {
    std::unique_ptr<SqliteConnection> connection =
        kindOf(path) == FileKind::Sqlite ? SqliteConnection::openFile(path)
                                         : SqliteConnection::openImage(convertJet(reader, path));
    checkNuclideSchema(*connection);
    return connection;
}

}  // namespace

std::string nuclideDatabasePath(const std::string& marigoldDir) {
    return marigoldDir.empty() ? std::string() : pathIgnoringCase(marigoldDir, fileName);
}

void NuclideDatabase::open(const std::string& marigoldDir) {
    if (isOpen())
        return;
    const std::string path = nuclideDatabasePath(marigoldDir);
    if (path.empty())
        throw DatabaseError(std::string(fileName) + "\nits folder has not been set");
    try {
        connection_ = connect(jetReader_, path);
    } catch (const DatabaseError& error) {
        throw DatabaseError(path + "\n" + error.what());
    } catch (const RuntimeFault& fault) {
        throw DatabaseError(path + "\n" + std::string(fault.text()));
    }
}

void NuclideDatabase::prepareEnergyWindowQuery() {
    if (!energyQueryPrepared())
        energyCommand_ = connection_->prepare(energyWindowQuery);
}

void NuclideDatabase::close() {
    energyRecordset_.reset();
    energyCommand_.reset();
    connection_.reset();
}

Recordset& NuclideDatabase::queryEnergyWindow(double low, double high) {
    sqlite3_reset(energyCommand_.get());
    sqlite3_bind_double(energyCommand_.get(), 1, double{toSingle(low)});
    sqlite3_bind_double(energyCommand_.get(), 2, double{toSingle(high)});
    energyRecordset_.emplace(*connection_, energyCommand_);
    return *energyRecordset_;
}

Recordset NuclideDatabase::query(const std::string& text) {
    return {*connection_, connection_->prepare(text)};
}

Recordset NuclideDatabase::queryGammaLines(double centre) {
    return query(gammaLinesQuery(centre));
}

Recordset NuclideDatabase::queryNuclide(std::string_view element, std::string_view massText,
                                        bool isomeric) {
    return query(nuclideQuery(element, massText, isomeric));
}

std::string NuclideDatabase::sourceOfState(std::int32_t id) {
    try {
        const Recordset source =
            query("select src_name, src_date from src where src_nc = " + std::to_string(id));
        return source.eof() || source.isNull("src_name")
                   ? std::string()
                   : source.text("src_name") + " of " + source.text("src_date");
    } catch (const DatabaseError&) {
        return {};
    }
}

std::vector<DataSource> NuclideDatabase::sources(const std::string& marigoldDir) {
    std::vector<DataSource> found;
    try {
        open(marigoldDir);
        Recordset source = query(
            "select distinct src_name, src_date from src order by src_name, src_date limit 20");
        for (; !source.eof(); source.moveNext())
            found.push_back({source.text("src_name"), source.text("src_date")});
    } catch (const DatabaseError&) {
        // A database of another origin need not tell.
    }
    return found;
}

Recordset NuclideDatabase::queryAllStates() {
    return query(
        "select nc_id, nc_z, nc_a, nc_i_num, nc_dmode, nc_hl, nc_tsec, elm_name from q_nuc");
}

Recordset NuclideDatabase::queryAllGammas() {
    return query(
        "select eng_nc, eng_eng, eng_br, eng_raddef from eng where eng_br > 0.1 and eng_rad = 'G' "
        "and (eng_raddef is null or trim(eng_raddef) = '' or trim(eng_raddef) like 'X%')");
}

Recordset NuclideDatabase::queryLinesOfNuclides(std::span<const std::int32_t> ids) {
    return query(linesOfNuclidesQuery(ids));
}

}  // namespace kestrel
