#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "ScaleRun.h"

namespace scale {

// What is wrong with a run: nothing when every command was answered once and, after a soak, memory,
// descriptors and threads stayed flat.
std::vector<std::string> Complaints(const ScaleOptions& options, const ScaleResult& result);

nlohmann::json ToJson(const ScaleOptions& options, const ScaleResult& result);

// The figures of ToJson that people look at first, one a line.
void PrintTable(std::ostream& out, const nlohmann::json& report);

} // namespace scale
