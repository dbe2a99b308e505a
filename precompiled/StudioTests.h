// What the tests of the studio's views include.
#pragma once
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "precompiled/Studio.h"
