// The Agent control as its automation interface shows it. Every call can throw NeighbourError, and runs the message
// loop while it waits.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/neighbour.h"

namespace murmelix::platform {

// Stands for one queued call; kept, never asked.
class AgentRequest {
  public:
    virtual ~AgentRequest() = default;
};

class AgentCharacter {
  public:
    virtual ~AgentCharacter() = default;
    virtual bool Visible() = 0;
    virtual std::u16string Name() = 0;
    virtual std::int16_t Left() = 0; // screen pixels, as are the next three
    virtual std::int16_t Top() = 0;
    virtual std::int16_t Width() = 0;
    virtual std::int16_t Height() = 0;
    virtual std::int32_t LanguageID() = 0;
    virtual void setLanguageID(std::int32_t language_id) = 0;
    virtual std::int32_t BalloonStyle() = 0;
    virtual void setBalloonStyle(std::int32_t style) = 0;
    // Commands.Add; the voice grammar is left empty.
    virtual void AddCommand(const std::u16string& name, const std::u16string& caption, bool enabled, bool visible) = 0;

    virtual std::shared_ptr<AgentRequest> Play(const std::u16string& animation) = 0;
    virtual void Stop(const std::u16string& what) = 0; // with a text argument
    // An absent text or Url is left out of the call.
    virtual std::shared_ptr<AgentRequest> Speak(const std::optional<std::u16string>& text,
                                                const std::optional<std::u16string>& url) = 0;
    virtual std::shared_ptr<AgentRequest> Show() = 0;                                 // Fast omitted
    virtual std::shared_ptr<AgentRequest> Hide() = 0;                                 // Fast omitted
    virtual std::shared_ptr<AgentRequest> MoveTo(std::int16_t x, std::int16_t y) = 0; // Speed omitted
};

// What the server tells; functions left empty are not called. One that ends without a word has shut down.
struct AgentEvents {
    std::function<void(const std::u16string& name)> Command;
    std::function<void(const std::u16string& character_id, std::int16_t button, std::int16_t shift, std::int16_t x,
                       std::int16_t y)>
        DblClick;
    std::function<void(const std::u16string& character_id)> IdleStart;
    std::function<void()> Restart;
    std::function<void()> Shutdown;
};

class AgentControl {
  public:
    virtual ~AgentControl() = default;
    virtual void setRaiseRequestErrors(bool raise) = 0; // dispatch id 21
    virtual bool AudioOutputEnabled() = 0;
    virtual void setPropertySheetPage(const std::u16string& page) = 0;
    virtual void setPropertySheetVisible(bool visible) = 0;
    virtual std::shared_ptr<AgentRequest> Load(const std::u16string& character_id, const std::u16string& path) = 0;
    virtual std::shared_ptr<AgentCharacter> Character(const std::u16string& character_id) = 0;
    virtual void Unload(const std::u16string& character_id) = 0;
};

// Creates the control and hears its events. Never null; where Agent is not installed, every call throws.
std::unique_ptr<AgentControl> createAgentControl(AgentEvents events);

} // namespace murmelix::platform
