// A damaged Access database, through the program that converts it, up to what the nuclide windows
// show of it. The input is either the file itself (first byte odd) or a list of changes to a good
// one: three bytes of the length to cut it to, then four bytes for each change, place and value.

#include "base/runtime_fault.h"
#include "fuzz_input.h"
#include "nuclide/energy_list.h"
#include "nuclide/nuclide_data.h"

namespace {

using namespace kestrel;

std::size_t number(std::string_view bytes) {
    std::size_t value = 0;
    for (const char c : bytes)
        value = value << 8 | static_cast<unsigned char>(c);
    return value;
}

std::string damaged(std::string_view changes) {
    static const std::string good = fuzz::contentsOf(KESTREL_TEST_DATA "/jet/nuc2k.mdb");
    std::string bytes = good;
    if (changes.size() < 3)
        return bytes;
    const std::size_t length = number(changes.substr(0, 3));
    for (std::string_view left = changes.substr(3); left.size() >= 4; left.remove_prefix(4))
        bytes[number(left.substr(0, 3)) % bytes.size()] = left[3];
    if (length < bytes.size() && length % 4 == 1)
        bytes.resize(length);
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::asText(data, size);
    const bool whole = size > 0 && (data[0] & 1) != 0;
    fuzz::writeFile("nuc2k.mdb",
                    whole ? std::string(input.substr(1)) : damaged(input.substr(size > 0 ? 1 : 0)));
    NuclideDatabase database(KESTREL_JET_READER);
    fuzz::SilentDialogs dialogs;
    EnergyListState list;
    list.forceRefresh = true;
    NuclideData nuclide;
    try {
        EnergyEntries wide;
        wide.text[halfWidthEntry] = "1000";
        refreshEnergyList(list, {1000, {0, 1, 0}, wide, fuzz::folder()}, database, dialogs);
        for (const char* key : {"Eu-152m", "Co- 60g"})
            showNuclideFromDatabase(nuclide, key, fuzz::folder(), database, dialogs);
        if (database.isOpen())
            database.queryGammaLines(661.66);
    } catch (const RuntimeFault&) {
    } catch (const DatabaseError&) {
    }
    return 0;
}
