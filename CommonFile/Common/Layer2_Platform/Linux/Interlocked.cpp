#include "Interlocked.h"

Interlocked::Interlocked(int nValue) : m_counter(nValue) {}

int Interlocked::Increment() { return __atomic_add_fetch(&m_counter, 1, __ATOMIC_SEQ_CST); }

int Interlocked::Decrement() { return __atomic_sub_fetch(&m_counter, 1, __ATOMIC_SEQ_CST); }

int Interlocked::ExchangeAdd(int n) { return __atomic_fetch_add(&m_counter, n, __ATOMIC_SEQ_CST); }

int Interlocked::SetValue(int nValue) { return __atomic_exchange_n(&m_counter, nValue, __ATOMIC_SEQ_CST); }

Interlocked::operator int() const { return __atomic_load_n(&m_counter, __ATOMIC_SEQ_CST); }
