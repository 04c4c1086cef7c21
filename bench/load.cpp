// Loads the libraries that it is told, and does nothing with them: what of a program's start is the dynamic
// linker's.

#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (!dlopen(argv[i], RTLD_LAZY)) {
            std::fprintf(stderr, "loadbench: %s\n", dlerror());
            return EXIT_FAILURE;
        }
    }
}
