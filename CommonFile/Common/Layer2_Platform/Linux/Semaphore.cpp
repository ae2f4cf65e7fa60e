#include "Semaphore.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>

#include "PFTime.h"

CMySemaphore::CMySemaphore(unsigned int nInitCount, unsigned int nMaxCount)
    : m_FEventCS(false), m_MaxCount(nMaxCount), m_semCount(std::min(nInitCount, nMaxCount))
{
}

void CMySemaphore::lock()
{
    CAutoLock guard(m_FEventCS);
    while (m_semCount == 0) {
        m_FCond.Wait(m_FEventCS);
    }
    m_semCount = m_semCount - 1;
}

bool CMySemaphore::lock(unsigned int ms)
{
    const timespec deadline = CPFTime::GetDeadline(ms);
    CAutoLock guard(m_FEventCS);
    while (m_semCount == 0) {
        if (!m_FCond.WaitUntil(m_FEventCS, deadline)) {
            return false;
        }
    }
    m_semCount = m_semCount - 1;
    return true;
}

bool CMySemaphore::trylock()
{
    CAutoLock guard(m_FEventCS);
    if (m_semCount == 0) {
        return false;
    }
    m_semCount = m_semCount - 1;
    return true;
}

bool CMySemaphore::unlock() { return unlock(1, nullptr); }

bool CMySemaphore::unlock(int n, int* pPrev)
{
    CAutoLock guard(m_FEventCS);
    const unsigned int nCount = m_semCount;
    if (pPrev != nullptr) {
        *pPrev = static_cast<int>(nCount);
    }
    if (n <= 0 || static_cast<unsigned int>(n) > m_MaxCount - nCount) {
        return false;
    }
    m_semCount = nCount + static_cast<unsigned int>(n);
    if (n == 1) {
        m_FCond.WakeOne();
    } else {
        m_FCond.WakeAll();
    }
    return true;
}

CNameLock::CNameLock(const char* szName) : m_pSemLock(nullptr)
{
    constexpr mode_t FOR_ALL = 0666;
    constexpr unsigned int FREE = 1;
    if (szName == nullptr) {
        return;
    }
    sem_t* pSem = sem_open(szName, 0);
    if (pSem == SEM_FAILED) {
        pSem = sem_open(szName, O_CREAT | O_RDWR, FOR_ALL, FREE);
    }
    if (pSem != SEM_FAILED) {
        m_pSemLock = pSem;
    }
}

CNameLock::~CNameLock()
{
    if (m_pSemLock != nullptr) {
        sem_close(m_pSemLock);
    }
}

bool CNameLock::Lock()
{
    if (m_pSemLock == nullptr) {
        return false;
    }
    int nResult = 0;
    do {
        nResult = sem_wait(m_pSemLock);
    } while (nResult != 0 && errno == EINTR);
    return nResult == 0;
}

bool CNameLock::Unlock() { return m_pSemLock != nullptr && sem_post(m_pSemLock) == 0; }
