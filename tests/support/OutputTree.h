// What an export left on disk, for comparison byte for byte.
#pragma once

#include <map>
#include <string>

namespace larkspan::testing {

// Relative path with forward slashes ("data/000012F6.dxl", "views/" for a folder) to content.
using OutputTree = std::map<std::string, std::string>;

OutputTree ReadOutputTree(const std::wstring& folder);

// The audit report with the times of its run masked: "Archive started at", "Archive ended at" and
// "Total runtime (seconds)" keep their labels.
std::string MaskAuditTimes(const std::string& audit);

// Where two trees differ, in words; empty when they are the same.
std::string DescribeDifferences(const OutputTree& expected, const OutputTree& actual);

// Compares a tree, its audit report masked and the namespace of DXL named by the word
// DXL-NAMESPACE, with the expected one of this name that is kept beside the tests. With
// LARKSPAN_WRITE_EXPECTED set in the environment the expected tree is written anew instead, which
// is reported as a difference, so that no such run passes.
std::string CompareWithExpected(const OutputTree& tree, const std::string& expectedName);

}  // namespace larkspan::testing
