// The contacts in two groups, those who are there and the others, each below a heading with their number and sorted by
// name. One contact that comes, goes or changes costs as much as one row, however many there are.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "companions/messenger/chat/contact.h"
#include "ui/list_box.h"

namespace messenger_client {

class ContactList final : public murmelix::ui::ListBox {
  public:
    explicit ContactList(murmelix::ui::Control& parent);

    // Those of another account, all at once.
    void show(const std::vector<ContactPtr>& contacts);
    void add(const ContactPtr& contact);
    void remove(const ContactPtr& contact);
    // Its name or its status is another one.
    void update(const ContactPtr& contact);

    bool empty() const { return places_.empty(); }
    // Of a row; null for a heading, and where there is none.
    ContactPtr contactAt(int row) const;
    ContactPtr selected() const { return contactAt(ListIndex()); }
    // Selects the next contact down (1) or up (-1), over headings; false where there is none.
    bool step(int rows);
    // As high as a row's two lines need it.
    void fitRows();

  private:
    enum Group : std::size_t { here, away };
    // The order within a group: by name in lower case, then by sign-in name, which no two share.
    struct Entry {
        std::u16string key;
        ContactPtr contact;
    };
    struct Place {
        Group group;
        std::u16string key;
    };
    using Entries = std::vector<Entry>;

    static Place placeFor(const Contact& contact);
    static bool before(const Entry& a, const Entry& b);
    std::ptrdiff_t positionOf(Group group, const Entry& entry) const;
    int headingRow(Group group) const;
    // The row's text; how many it is about is drawn, for it changes with every contact.
    static std::u16string heading(Group group);
    std::u16string counted(int heading_row) const;
    void draw(murmelix::ui::Surface& surface, int row, const Looks& looks) const;

    std::array<Entries, 2> groups_;
    std::unordered_map<const Contact*, Place> places_;
};

} // namespace messenger_client
