// The one exception of COM code: a call that failed. It is caught before a COM boundary or a window procedure.
#pragma once

#include <stdexcept>
#include <string>

#include <windows.h>

namespace murmelix::com {

class Error : public std::runtime_error {
  public:
    explicit Error(HRESULT result, std::u16string description = {});
    HRESULT result() const { return result_; }
    const std::u16string& description() const { return description_; }

  private:
    HRESULT result_;
    std::u16string description_;
};

// Throws Error for a failed result.
void check(HRESULT result);

// True for the results that say that the other process, or its object, is gone.
bool isGone(HRESULT result);

} // namespace murmelix::com
