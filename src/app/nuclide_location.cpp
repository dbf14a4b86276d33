#include "app/nuclide_location.h"

#include <filesystem>

#include "base/input_file.h"
#include "base/text.h"
#include "nuclide/database.h"

namespace kestrel {
namespace {

constexpr const char* databaseName = "nuc2k.mdb";

bool hasDatabase(const std::string& folder) {
    return fileExists(nuclideDatabasePath(folder));
}

}  // namespace

bool locateNuclideDatabase(std::string& marigoldDir, const std::string& bundledFolder,
                           Dialogs& dialogs) {
    const FileChoice choice = dialogs.openFile(
        {.title = "OPEN NuclDB file(nuc2k.mdb)",
         .filters = {{"NuclDB file(nuc2k.mdb)", "*.mdb"}},
         .folder = bundledFolder,
         .fileName =
             std::filesystem::path(nuclideDatabasePath(bundledFolder)).filename().string()});
    if (choice.path.empty())
        return false;
    const std::filesystem::path path = choice.path;
    const bool named =
        fileExists(choice.path) && containsIgnoringCase(path.filename().string(), databaseName);
    marigoldDir = named ? path.parent_path().string() : std::string();
    return named;
}

void checkNuclideDatabase(std::string& marigoldDir, const std::string& bundledFolder,
                          Dialogs& dialogs) {
    if (!hasDatabase(marigoldDir) && !locateNuclideDatabase(marigoldDir, bundledFolder, dialogs))
        dialogs.message(
            {.text = "Set NuclDB file(nuc2k.mdb) Dir\non option of Main window(Kestrel).",
             .title = "ERROR: NuclDB"});
}

}  // namespace kestrel
