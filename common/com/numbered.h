// Objects whose members are told apart by their numbers, until each has a row.
#pragma once

#include <map>

#include "common/com/served.h"

namespace murmelix::com::numbered {

enum class Access : unsigned { get = 1, put = 2, method = 4, get_put = 3 };

struct Member {
    const wchar_t* name;
    DISPID id;
    Access access;
    std::vector<const wchar_t*> parameters = {};
    std::size_t required = 0;
};

struct Call {
    DISPID member;
    bool put;
    std::vector<Variant> arguments;
};

class Served : public com::Served {
  protected:
    virtual std::span<const Member> numbered() const = 0;
    virtual Variant invoke(const Call& call) = 0;

  private:
    std::span<const com::Member> members() const override {
        static std::map<const Member*, std::vector<com::Member>> tables;
        const auto all = numbered();
        auto& table = tables[all.data()];
        if (table.empty()) {
            for (const Member& member : all) {
                const auto has = [&](Access access) {
                    return (static_cast<unsigned>(member.access) & static_cast<unsigned>(access)) != 0;
                };
                const auto action = [id = member.id](bool put) {
                    return [id, put](com::Call& call) {
                        auto& object = static_cast<Served&>(call.enter());
                        return object.invoke({id, put, call.arguments()});
                    };
                };
                com::Member& row = table.emplace_back(
                    com::Member{member.name, member.id, member.parameters, member.required, {}, {}, {}});
                if (has(Access::get)) {
                    row.get = action(false);
                }
                if (has(Access::put)) {
                    row.put = action(true);
                }
                if (has(Access::method)) {
                    row.method = action(false);
                }
            }
        }
        return table;
    }
};

} // namespace murmelix::com::numbered
