/* A program that knows the library only at run time, as an interpreter does. */

#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>

static void* library;

static void program(void)
{
    ((void** (*)(uint8_t))dlsym(library, "Open_Sys"))(0);
    int32_t window = ((int32_t(*)(int32_t, int32_t, int32_t, int32_t))dlsym(library, "OpenWindow"))(
        20, 20, 100, 50);
    ((void (*)(intptr_t, const char*))dlsym(library, "Text"))(window, "loaded");
    ((void (*)(void))dlsym(library, "End"))();
}

int main(int argc, char** argv)
{
    library = dlopen(argv[1], RTLD_NOW);
    if (library == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    return ((int32_t(*)(int, char**, void (*)(void)))dlsym(library, "PlinthStart"))(argc, argv,
                                                                                    program);
}
