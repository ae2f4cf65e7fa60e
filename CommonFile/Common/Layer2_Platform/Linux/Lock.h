#pragma once
// Thread synchronisation: locks, events and semaphores.

#include "Event.h"
#include "Semaphore.h"
#include "ThreadLock.h"
