#include "app/shell_state.h"

namespace murmelix {

std::u16string WindowsDir;
std::u16string SettingsKeyPath;
std::u16string SoundsDir;
std::u16string CharPicsDir;
std::int16_t MainFormLoaded = 0;
std::int16_t IsReadingConversation = 0;
std::int32_t ReadingWindowHandle = 0;
std::uint32_t ReadingNumber = 0;
int SpeechCheckAnswer = 0;

} // namespace murmelix
