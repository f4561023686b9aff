// Compiled once for the libraries of the project: what most of their sources include. Each source includes what it uses
// all the same; the fuzz targets, which are built without this, see to it for what they need.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
