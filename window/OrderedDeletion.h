// Deletes objects one by one, where their parents would choose the order.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Deletes an object and forgets it.
template <typename Object> void deleteAndForget(Object*& object) {
    delete object;
    object = nullptr;
}
