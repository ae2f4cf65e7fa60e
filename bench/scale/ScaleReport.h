#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "ScaleRun.h"

namespace scale {

// The faults of a run: none when every command was answered once and, after a soak, memory, descriptors and
// threads stayed flat.
std::vector<std::string> Complaints(const ScaleOptions& options, const ScaleResult& result);

nlohmann::json ToJson(const ScaleOptions& options, const ScaleResult& result);

// The main figures of ToJson, one per line.
void PrintTable(std::ostream& out, const nlohmann::json& report);

} // namespace scale
