// The energy list file: eight bytes of the cursor's energy, then the file.

#include "base/byte_reader.h"
#include "base/runtime_fault.h"
#include "fuzz_input.h"
#include "nuclide/energy_list_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel;
    if (size < 8)
        return 0;
    const auto bytes = std::as_bytes(std::span(data, size));
    const double energy = ByteReader(bytes).doubleAt(0);
    const std::string path = fuzz::writeFile("all_nucl.elf", fuzz::asText(data + 8, size - 8));
    try {
        const EnergyList list = listFromFile(path, energy);
        fuzz::require(!list.rows.empty() && list.rows.size() <= 100 &&
                      list.current <= static_cast<int>(list.rows.size()));
    } catch (const RuntimeFault&) {
    }
    return 0;
}
