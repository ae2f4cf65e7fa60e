#pragma once
// What threads wait for each other with: locks, events and semaphores.

#include "Event.h"
#include "Semaphore.h"
#include "ThreadLock.h"
