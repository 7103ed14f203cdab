// Deleting what is laid down to be deleted in a certain order.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Deletes an object and forgets it.
template <typename Object> void release(Object*& object) {
    delete object;
    object = nullptr;
}
