// A database under the right name that holds anything: what an SQLite file, or a damaged Access
// file's converter, may hand over. The input is a list of changes to a good file: four bytes for
// each, place and value.

#include "base/runtime_fault.h"
#include "fuzz_input.h"
#include "nuclide/database_schema.h"
#include "nuclide/energy_list.h"
#include "nuclide/queries.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel;
    static const std::string good = fuzz::contentsOf(KESTREL_FUZZ_IMAGE);
    std::string bytes = good;
    for (std::size_t i = 0; i + 4 <= size; i += 4) {
        const std::size_t place =
            std::size_t{data[i]} << 16 | std::size_t{data[i + 1]} << 8 | data[i + 2];
        bytes[place % bytes.size()] = static_cast<char>(data[i + 3]);
    }
    try {
        const auto connection = SqliteConnection::openImage(std::move(bytes));
        checkNuclideSchema(*connection);
        for (const std::string& text : {gammaLinesQuery(500), nuclideQuery("Co", "60", false),
                                        std::string("select * from q_eng_order_id2"),
                                        std::string("select * from q_eng_order_id")}) {
            Recordset rows(*connection, connection->prepare(text));
            for (int i = 0; !rows.eof() && i < 1000; ++i, rows.moveNext())
                static_cast<void>(rows.number("eng_br"));
        }
    } catch (const RuntimeFault&) {
    } catch (const DatabaseError&) {
    }
    return 0;
}
