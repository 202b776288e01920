#include "console/follow/ExporterArguments.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include "console/follow/JobProcess.h"

namespace larkspan::console {
namespace {

using WideWords = std::vector<std::wstring>;

WideWords ParsedBack(const std::wstring& commandLine) {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(commandLine.c_str(), &count);
  WideWords words(arguments, arguments + count);
  LocalFree(arguments);
  return words;
}

TEST(BuildCommandLineTest, ParsesBackToTheSameTexts) {
  const WideWords rows[] = {
      {L"larkspan.exe"},
      {L"C:\\Program Files\\Notes\\larkspan.exe", L"-p", L"a b.nsf"},
      {L"x.exe", L""},
      {L"x.exe", L"", L""},
      {L"x.exe", L"a\tb", L"c\nd", L"e\vf"},
      {L"x.exe", L"\"", L"\"\"", L"a\"b"},
      {L"x.exe", L"\\", L"\\\\", L"a\\b\\"},
      {L"x.exe", L"D:\\my folder\\", L"next"},
      {L"x.exe", L"D:\\my folder\\\\", L"next"},
      {L"x.exe", L"\\\"", L"\\\\\"", L"a \\\" b", L"a \\\\\" b\\"},
      {L"x.exe", L"%PATH%", L"^&|<>", L"'single'"},
      {L"x.exe", L"Übersicht 日本.nsf", L"\U0001F331"},
      {L"x.exe", L"=Z:\\notes.ini"},
  };
  for (const WideWords& row : rows) EXPECT_EQ(ParsedBack(BuildCommandLine(row)), row);
}

TEST(BuildCommandLineTest, WhatNeedsNoQuotesHasNone) {
  EXPECT_EQ(BuildCommandLine({L"x.exe", L"-p", L"a\\b.nsf"}), L"x.exe -p a\\b.nsf");
}

ExportRequest LocalRequest() {
  ExportRequest request;
  request.path = "x.nsf";
  request.out = "out";
  return request;
}

TEST(ExporterArgumentsTest, TheLeastIsAnArchiveOfALocalDatabase) {
  EXPECT_EQ(ExporterArguments(LocalRequest(), L"D:\\out", true),
            (WideWords{L"-p", L"x.nsf", L"-o", L"D:\\out", L"-archive"}));
}

TEST(ExporterArgumentsTest, EachSettingHasItsArgument) {
  ExportRequest request = LocalRequest();
  request.server = "Mühle/Example";
  request.path = "日本.nsf";
  request.idFile = "ids\\ada.id";
  request.notesIni = "Z:\\my notes.ini";
  request.fullAccess = true;
  request.debug = true;
  EXPECT_EQ(ExporterArguments(request, L"D:\\out", false),
            (WideWords{L"=Z:\\my notes.ini", L"-s", L"Mühle/Example", L"-p", L"日本.nsf", L"-o",
                       L"D:\\out", L"-id", L"ids\\ada.id", L"-archive", L"-fullaccess", L"-noview",
                       L"-debug"}));
}

TEST(ExporterArgumentsTest, ThePlainFormIsNoArchive) {
  ExportRequest request = LocalRequest();
  request.archive = false;
  request.views = false;
  const WideWords arguments = ExporterArguments(request, L"D:\\out", request.views);
  EXPECT_EQ(std::count(arguments.begin(), arguments.end(), L"-archive"), 0);
}

// Where the views are left out only in the second of two runs, the request still has them.
TEST(ExporterArgumentsTest, TheRunDecidesOnItsViews) {
  const WideWords arguments = ExporterArguments(LocalRequest(), L"D:\\out", false);
  EXPECT_EQ(std::count(arguments.begin(), arguments.end(), L"-noview"), 1);
}

}  // namespace
}  // namespace larkspan::console
