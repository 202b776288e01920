#include "base/Settings.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/support/ScopedSettings.h"

namespace larkspan {
namespace {

TEST(SettingsTest, PasswordDoesNotStayWhereTheSettingsComeFrom) {
  const ScopedSettings restored{Settings()};
  const std::wstring password = L"secret";
  Settings settings;
  settings.idPassword = password;
  // A text as short as this lies in the settings themselves.
  const wchar_t* const place = settings.idPassword.data();
  SetProcessSettings(std::move(settings));
  EXPECT_EQ(ProcessSettings().idPassword, password);
  EXPECT_EQ(std::wstring(place, password.size()), std::wstring(password.size(), L'\0'));
}

}  // namespace
}  // namespace larkspan
