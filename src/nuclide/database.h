// The one connection to the nuclide database nuc2k.mdb and the four queries that are sent over it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "nuclide/sqlite.h"

namespace kestrel {

// Path of the database file in a folder, whatever the letter case of its name; empty for no folder.
std::string nuclideDatabasePath(const std::string& marigoldDir);

struct DataSource {
    std::string name;
    std::string date;
};

// An Access (Jet) file is converted by a program of its own, so that a damaged one cannot harm this
// one; an SQLite file with the same tables and views is read as it is.
class NuclideDatabase {
  public:
    NuclideDatabase() = default;
    // Path of the program that converts Access files.
    explicit NuclideDatabase(std::string jetReader) : jetReader_(std::move(jetReader)) {}

    // Does nothing when it is open already, in whatever folder. Throws DatabaseError, whose text
    // names the file; the database is then closed as before.
    void open(const std::string& marigoldDir);
    // Prepares the query of the energy window, once. The database must be open.
    void prepareEnergyWindowQuery();
    void close();

    bool isOpen() const { return connection_ != nullptr; }
    bool energyQueryPrepared() const { return energyCommand_ != nullptr; }
    bool energyRecordsetOpen() const { return energyRecordset_.has_value(); }

    // The queries. The database must be open, for the first one prepared as well. Energies in keV.
    // Throw DatabaseError.
    Recordset& queryEnergyWindow(double low, double high);
    Recordset queryGammaLines(double centre);
    Recordset queryNuclide(std::string_view element, std::string_view massText, bool isomeric);
    // Where the gamma lines of a state come from, as "ENSDF of 2023-09-01". Empty where the
    // database does not tell: only the one that comes with the program has this table. Raises
    // nothing.
    std::string sourceOfState(std::int32_t id);
    // Where all its data come from, at most a few; none where it cannot be opened or does not tell.
    std::vector<DataSource> sources(const std::string& marigoldDir);
    Recordset queryLinesOfNuclides(std::span<const std::int32_t> ids);
    // For the candidates: all states, and all gamma lines without any that are X-rays or
    // annihilation.
    Recordset queryAllStates();
    Recordset queryAllGammas();

  private:
    Recordset query(const std::string& text);

    std::string jetReader_;
    std::unique_ptr<SqliteConnection> connection_;
    std::shared_ptr<sqlite3_stmt> energyCommand_;
    std::optional<Recordset> energyRecordset_;
};

}  // namespace kestrel
