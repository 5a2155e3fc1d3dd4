// Memory that one side of the boundary allocates and the other frees.
#include <cstdlib>

#include <objbase.h>

LPVOID CoTaskMemAlloc(SIZE_T size)
{
    return std::malloc(size == 0 ? 1 : size);
}

LPVOID CoTaskMemRealloc(LPVOID memory, SIZE_T size)
{
    if (size == 0 && memory != nullptr) {
        std::free(memory);
        return nullptr;
    }
    return std::realloc(memory, size == 0 ? 1 : size);
}

void CoTaskMemFree(LPVOID memory)
{
    std::free(memory);
}
