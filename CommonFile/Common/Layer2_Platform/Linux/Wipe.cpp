#include "Wipe.h"

#include <string.h> // explicit_bzero is no function of <cstring>

void WipeBytes(void* pData, size_t nLen)
{
    if (nLen != 0) {
        explicit_bzero(pData, nLen);
    }
}
