// What a test program does when the program starts threads.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ThreadStarts.h"

#include <cerrno>

#include <dlfcn.h>
#include <pthread.h>

namespace testsupport {

namespace {
// A system call is a plain function, so what it looks at has to stand outside of any object.
ThreadStarts*& current() {
    static ThreadStarts* starts = nullptr;
    return starts;
}

using CreateThread = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);

int startThread(pthread_t* thread, const pthread_attr_t* attributes, void* (*function)(void*),
                void* argument) {
    if (ThreadStarts* starts = current()) {
        ++starts->count;
        if (starts->refuses)
            return EAGAIN;
    }
    static const auto systems = reinterpret_cast<CreateThread>(dlsym(RTLD_NEXT, "pthread_create"));
    return systems(thread, attributes, function, argument);
}
} // namespace

ThreadStarts::ThreadStarts(bool refuse) : refuses(refuse) {
    current() = this;
}

ThreadStarts::~ThreadStarts() {
    current() = nullptr;
}

} // namespace testsupport

// For the whole test program, before the system's.
extern "C" int pthread_create(pthread_t* newthread, const pthread_attr_t* attr,
                              void* (*start_routine)(void*), void* arg) {
    return testsupport::startThread(newthread, attr, start_routine, arg);
}
