// Expects a statement to raise a run-time fault of one number.
#pragma once

#include <gtest/gtest.h>

#include "base/runtime_fault.h"

namespace kestrel::test {

// The number of the fault that `action` raises; 0 when it raises none.
template <typename Action>
int faultOf(Action&& action) {
    try {
        action();
    } catch (const RuntimeFault& fault) {
        return fault.number();
    }
    return 0;
}

}  // namespace kestrel::test

#define EXPECT_FAULT(statement, fault)                                       \
    EXPECT_EQ(kestrel::test::faultOf([&] { static_cast<void>(statement); }), \
              static_cast<int>(fault))
