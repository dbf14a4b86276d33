// kestrel-mdb2sql FILE: writes an Access database to the standard output, a pipe, as an SQLite one.
// Exit code 1: it cannot be read, and the output says why. It is a program of its own because the
// library that reads Access files may crash or hang on a damaged one.

#include <cstdio>
#include <exception>
#include <new>
#include <string>

#include "nuclide/jet/jet_import.h"
#include "nuclide/jet/sandbox.h"

namespace {

bool write(const std::string& bytes) {
    return std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() &&
           std::fflush(stdout) == 0;
}

}  // namespace

int main(int argc, char** argv) {
    kestrel::jet::enterSandbox();
    if (argc != 2)
        return 2;
    try {
        return write(kestrel::jet::importJetFile(argv[1])) ? 0 : 2;
    } catch (const std::bad_alloc&) {
        write("there is not enough memory to read this file");
        return 1;
    } catch (const std::exception& error) {
        write(error.what());
        return 1;
    }
}
