#pragma once

// Atomic counter. Every operation is a full fence, the read included.
class Interlocked {
public:
    explicit Interlocked(int nValue);
    Interlocked(const Interlocked&) = delete;
    Interlocked& operator=(const Interlocked&) = delete;

    int Increment();          // returns the new value
    int Decrement();          // returns the new value
    int ExchangeAdd(int n);   // returns the old value
    int SetValue(int nValue); // returns the old value
    operator int() const;

private:
    volatile int m_counter;
};
