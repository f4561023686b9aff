// The objects that clients hold, member by member as published.
#pragma once

#include <memory>

#include "common/com/numbered.h"
#include "companions/agent/automation/server.h"

namespace agent::automation {

// Base of the objects of a client.
class ClientObject : public murmelix::com::numbered::Served {
  public:
    const std::shared_ptr<Client>& client() const { return client_; }

  protected:
    explicit ClientObject(std::shared_ptr<Client> client);
    ~ClientObject() override;

  private:
    std::shared_ptr<Client> client_;
};

class RequestObject final : public ClientObject {
  public:
    RequestObject(std::shared_ptr<Client> client, stage::RequestRef request);
    const stage::RequestRef& request() const { return request_; }

    // How an object that a client hands in is recognised as one of ours.
    static const IID own_interface;

  protected:
    ~RequestObject() override;
    std::span<const murmelix::com::numbered::Member> numbered() const override;
    Variant invoke(const murmelix::com::numbered::Call& call) override;
    void* interfaceFor(REFIID iid) override;

  private:
    stage::RequestRef request_;
};

// A control for a new client.
Ptr<IDispatch> makeControl(Server& server, DWORD process);
// The argument of the Command event.
Ptr<IDispatch> makeUserInput(const std::shared_ptr<Client>& client, std::u16string character, std::u16string command);

} // namespace agent::automation
