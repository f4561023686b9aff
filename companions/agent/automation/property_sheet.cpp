#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

class PropertySheet final : public ClientObject {
  public:
    explicit PropertySheet(std::shared_ptr<Client> client) : ClientObject(std::move(client)) {}

  private:
    const Interface* published() const override { return &type_library::IPropertySheet; }
    std::span<const Member> members() const override {
        static const Members<PropertySheet> all{
            property(L"Left", 1, &PropertySheet::left),
            property(L"Top", 2, &PropertySheet::top),
            property(L"Height", 3, &PropertySheet::height),
            property(L"Width", 4, &PropertySheet::width),
            property(L"Page", 5, &PropertySheet::page, &PropertySheet::setPage),
            property(L"Visible", 6, &PropertySheet::visible, &PropertySheet::setVisible),
        };
        return all;
    }

    settings::SettingsFrm& sheet() const { return server().settingsFrm(); }

    std::int16_t left() const { return small(sheet().Place().left); }
    std::int16_t top() const { return small(sheet().Place().top); }
    std::int16_t height() const { return small(sheet().Place().height); }
    std::int16_t width() const { return small(sheet().Place().width); }

    std::u16string page() const { return sheet().page(); }
    void setPage(const Label& page) {
        if (!sheet().setPage(page.text)) {
            throw Error(E_INVALIDARG, u"The pages are Speech, Output, Listening, Voices, Keys and Copyright.");
        }
    }

    bool visible() const { return sheet().Visible(); }
    void setVisible(bool visible) {
        if (visible) {
            sheet().present();
        } else {
            sheet().Unload();
        }
    }
};

} // namespace

Ptr<IDispatch> makePropertySheet(const std::shared_ptr<Client>& client) {
    return Ptr<IDispatch>(make<PropertySheet>(client).get());
}

} // namespace agent::automation
