#include "Wipe.h"

#include <string.h> // explicit_bzero is not in <cstring>

void WipeBytes(void* pData, size_t nLen)
{
    if (nLen != 0) {
        explicit_bzero(pData, nLen);
    }
}
