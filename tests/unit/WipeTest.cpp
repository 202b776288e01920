#include "base/Wipe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace larkspan {
namespace {

TEST(WipeTest, NothingOfTheTextIsLeftInItsPlace) {
  std::wstring secret = L"a password of some length";
  const wchar_t* const place = secret.data();
  const std::size_t length = secret.size();
  Wipe(secret);
  EXPECT_TRUE(secret.empty());
  EXPECT_TRUE(std::all_of(place, place + length, [](wchar_t unit) { return unit == 0; }));
}

TEST(WipeTest, WhatALongerTextLeftBehindGoesToo) {
  std::string secret(100, 'x');
  const char* const place = secret.data();
  secret.resize(3);
  Wipe(secret);
  EXPECT_TRUE(std::all_of(place, place + 100, [](char unit) { return unit == 0; }));
}

}  // namespace
}  // namespace larkspan
