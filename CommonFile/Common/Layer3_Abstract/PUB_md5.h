#pragma once

// Writes the MD5 digest of iLenIn bytes as 32 hexadecimal digits and a terminating zero: szOut has room for
// 33 bytes. Empty text for null data or a negative length.
void PUB_MD5Encrypt(const void* pIn, int iLenIn, char* szOut, bool bUpper) noexcept;
