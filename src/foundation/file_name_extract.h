#pragma once

#include <string>

// Splits a path into the parts node and file names are derived from. Separators are
// "/" and "\" (the last of either counts); the extension mark is the last ".".
//   1: directory part with its final separator ("" without one)
//   2: file name without its extension
//   3: path cut before the last "." anywhere (a dot in a directory counts)
//   4: from the last "." to the end; throws std::out_of_range when there is no "."
//   6: file name with its extension
//   anything else: the path unchanged
std::string FileNameExtract(std::string& path, int mode);
