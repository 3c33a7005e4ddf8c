// SPDX-License-Identifier: MIT
#include <QtQuickTest/quicktest.h>

#include "Setup.hpp"

QUICK_TEST_MAIN_WITH_SETUP(quick, vek::test::Setup)
