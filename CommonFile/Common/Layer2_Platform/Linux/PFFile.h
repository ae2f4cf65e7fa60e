#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// One open file. Used by one thread at a time; destruction closes it.
class CPFFile {
public:
    CPFFile() = default;
    ~CPFFile();
    CPFFile(const CPFFile&) = delete;
    CPFFile& operator=(const CPFFile&) = delete;

    // nMode takes the flags of open(2); a file created by O_CREAT may be read and written by everyone the
    // umask allows. A file that is still open is closed first. False when the file cannot be opened.
    bool Open(const std::string& strPath, uint32_t nMode);
    void Close();

    // Bytes in the file, or -1.
    int64_t GetSize() const;
    // Reads at the current position: the number of bytes read, below nLen only at the end of the file, or -1.
    int64_t Read(void* pData, size_t nLen);
    // Writes all nLen bytes at the current position; false when the file took fewer.
    bool Write(const void* pData, size_t nLen);

private:
    int m_fd = -1;
};
