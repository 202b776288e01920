// What the tests of XML files share.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/xml/Trees.h"

namespace larkspan {

// The first line of the files that the program prints itself.
inline constexpr char kDeclarationLine[] = "<?xml version='1.0' encoding='utf-8'?>\r\n";

class TreeTest : public ::testing::TestWithParam<Tree> {};

inline std::string TreeTestName(const ::testing::TestParamInfo<Tree>& test) {
  return TestName(test.param.name);
}

// What is printed of a tree that a test is about.
inline void PrintTo(const Tree& tree, std::ostream* out) { *out << tree.name; }

}  // namespace larkspan
