#pragma once

// Writes the MD5 digest of iLenIn bytes as 32 hexadecimal digits and a terminating zero: szOut has room for
// 33 bytes. An empty text where there is no such input (null data, negative length).
void PUB_MD5Encrypt(const void* pIn, int iLenIn, char* szOut, bool bUpper) noexcept;
