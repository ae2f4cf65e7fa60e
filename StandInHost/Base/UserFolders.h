#pragma once

#include <string>

namespace standin_host {

// This program's folder below the one that the variable names, such as XDG_CONFIG_HOME, else below that one
// in the user's home, such as ".config". Empty without either. Nothing is created.
std::string UserFolder(const char* variable, const char* inHome);

// Creates the folder and the missing ones above it, for the owner only. Failures show when a file is opened.
void MakeFolders(const std::string& folder);

// Empty when it is not set.
std::string EnvironmentText(const char* variable);

} // namespace standin_host
