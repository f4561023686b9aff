// Compiled once for the libraries of the project: what most of their sources include. Each source includes what it uses
// all the same; the 32-bit programs, which are built without this, see to it.
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
