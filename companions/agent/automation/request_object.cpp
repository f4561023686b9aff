#include "companions/agent/automation/objects.h"

namespace agent::automation {

const IID RequestObject::own_interface = {0x2b8f6a41, 0x9d15, 0x4c3e, {0xb7, 0x02, 0x5e, 0x93, 0xc8, 0x1d, 0x60, 0xfa}};

RequestObject::RequestObject(std::shared_ptr<Client> client, stage::RequestRef request)
    : ClientObject(std::move(client)), request_(std::move(request)) {}

RequestObject::~RequestObject() {
    client()->forget(request_->number);
}

std::span<const Member> RequestObject::members() const {
    static const Members<RequestObject> all{
        property(L"ID", 0, [](const RequestObject& self) { return self.request_->number; }),
        property(L"Status", 1,
                 [](const RequestObject& self) { return static_cast<std::int32_t>(self.request_->status); }),
        property(L"Description", 2, &RequestObject::description),
        property(L"Number", 3, &RequestObject::number),
    };
    return all;
}

stage::Failure RequestObject::failure() const {
    return request_->status == stage::Status::failed ? request_->failure : stage::Failure::none;
}

std::u16string RequestObject::description() const {
    switch (failure()) {
    case stage::Failure::none:
        return u"";
    case stage::Failure::no_animation:
        return u"The character has no such animation.";
    case stage::Failure::no_state:
        return u"The character has no such state.";
    case stage::Failure::not_loaded:
        return request_->text;
    case stage::Failure::hidden:
        return u"The character is hidden.";
    case stage::Failure::no_sound:
        return u"The sound file cannot be played.";
    case stage::Failure::bad_target:
        return u"That request belongs to the same character.";
    case stage::Failure::deadlock:
        return u"The characters would wait for one another for ever.";
    }
    return u"";
}

std::int32_t RequestObject::number() const {
    switch (failure()) {
    case stage::Failure::none:
        return 0;
    case stage::Failure::no_animation:
    case stage::Failure::no_state:
        return HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
    case stage::Failure::no_sound:
    case stage::Failure::not_loaded:
        return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    default:
        return E_FAIL;
    }
}

void* RequestObject::interfaceFor(REFIID iid) {
    return IsEqualIID(iid, own_interface) ? static_cast<IDispatch*>(this) : nullptr;
}

Ptr<IDispatch> finished(const std::shared_ptr<Client>& client, stage::Request request, stage::Failure failure) {
    const stage::RequestRef done = client->server().stage().newRequest(std::move(request));
    done->status = failure == stage::Failure::none ? stage::Status::complete : stage::Status::failed;
    done->failure = failure;
    client->server().tellOfDone(client, done);
    return Ptr<IDispatch>(client->object(done).get());
}

GivenRequest GivenRequest::of(const Variant& given) {
    const auto object = given.toObject();
    const auto own = object ? object.as<IDispatch>(RequestObject::own_interface) : Ptr<IDispatch>();
    if (!own) {
        throw Error(DISP_E_TYPEMISMATCH);
    }
    return {static_cast<RequestObject*>(own.get())->request()};
}

} // namespace agent::automation
