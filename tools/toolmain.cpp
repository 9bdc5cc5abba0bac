#include "tools/toolmain.h"

#include <cstdio>
#include <exception>
#include <new>
#include <stdexcept>

#include "core/attacks.h"
#include "core/board.h"
#include "core/keys.h"

int RunTool(const char* name, int (*run)(int argc, char** argv), int argc, char** argv) {
    InitHashKeys();
    InitAttackTables();
    ResetBoard();
    try {
        const int status = run(argc, argv);
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
            throw std::runtime_error("can't write to standard output");
        }
        return status;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "%s: not enough memory (build has the option --memory)\n", name);
    } catch (const std::exception& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "%s: %s\n", name, error.what());
    }
    return 1;
}
