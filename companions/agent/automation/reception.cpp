#include "companions/agent/automation/reception.h"

#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

using murmelix::com::check;
using murmelix::com::Error;

// Made in the server's apartment and handed over to this thread's. A server that ends meanwhile breaks the promise.
Ptr<IDispatch> controlFor(Server& server, murmelix::com::ProcessId process) {
    const auto stream = std::make_shared<Ptr<IStream>>();
    auto promise = std::make_shared<std::promise<HRESULT>>();
    auto made = promise->get_future();
    server.messages().post([&server, process, stream, promise = std::move(promise)] {
        HRESULT result = E_UNEXPECTED;
        try {
            const auto control = makeControl(server, process);
            result = CoMarshalInterThreadInterfaceInStream(IID_IDispatch, control.get(), stream->out());
        } catch (const Error& error) {
            result = error.result();
        } catch (const std::bad_alloc&) {
            result = E_OUTOFMEMORY;
        }
        promise->set_value(result);
    });
    check(made.get());
    void* control = nullptr;
    check(CoGetInterfaceAndReleaseStream(stream->detach(), IID_IDispatch, &control));
    return Ptr<IDispatch>::adopt(static_cast<IDispatch*>(control));
}

} // namespace

Reception::Reception(Server& server) : server_(server), gone_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    std::promise<HRESULT> opened;
    auto result = opened.get_future();
    thread_ = std::thread([&server, &opened, gone = gone_, closed = closed_.get_future()] {
        const HRESULT entered = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        if (FAILED(entered)) {
            opened.set_value(entered);
            return;
        }
        try {
            const murmelix::com::ClassObject offered(
                serverClass().clsid, [&server] { return controlFor(server, murmelix::com::callingProcess()); });
            opened.set_value(S_OK);
            closed.wait();
        } catch (const Error& error) {
            opened.set_value(error.result());
        }
        CoUninitialize();
        SetEvent(gone);
    });
    const HRESULT offered = result.get();
    if (FAILED(offered)) {
        thread_.join();
        CloseHandle(gone_);
        throw Error(offered);
    }
    // So that others can see that it is open.
    SetWindowTextW(server.messages().handle(), L"AgentServer");
}

Reception::~Reception() {
    server_.messages().close();
    closed_.set_value();
    // The thread lets go of objects of this apartment, which must answer meanwhile.
    DWORD index = 0;
    CoWaitForMultipleHandles(0, INFINITE, 1, &gone_, &index);
    thread_.join();
    CloseHandle(gone_);
}

} // namespace agent::automation
