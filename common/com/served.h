// Objects served to other programs. Each class has a table with one row a member: its name, its dispatch id, and the
// functions that read it, write it or carry it out. What the functions take and return says how a call's arguments are
// read, so that all of them are plain values before the object is entered:
//   bool, std::int16_t, std::int32_t, double, std::u16string  the value, converted as automation does; an object stands
//                                                             for its default value, of which it is asked
//   Ptr<IDispatch>       an object, null for Nothing
//   Variant              whatever was given, as it is
//   std::optional<T>     a T that may be left out; Empty counts as left out, unless T has a refuses_empty
//   a class of one's own that has a static of(const Variant&)
#pragma once

#include <array>
#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/com/counted.h"
#include "common/com/handles.h"
#include "common/com/type_library.h"

namespace murmelix::com {

// UTF-16 units of the longest text that a caller may hand in. A novel has fewer, and a thousand of them are less than
// a process may hold.
inline constexpr std::size_t longest_text = 1 << 20;

class Call;
class Served;

using Action = std::function<Variant(Call&)>;

struct Member {
    const wchar_t* name;
    DISPID id;
    std::vector<const wchar_t*> parameters; // a caller may name its arguments by these
    std::size_t required;                   // of the parameters, from the first
    Action get, put, method;                // empty where the member has none; put takes one argument more
};

// What a caller hands in where a value is wanted: an object is asked for its default value, which may call back.
// Error(DISP_E_TYPEMISMATCH) where that is none.
Variant plain(const Variant& given);

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

template <class T>
T argument(const Variant& given) {
    if constexpr (IsOptional<T>::value) {
        constexpr bool refuses_empty = requires { T::value_type::refuses_empty; };
        const bool omitted = given.isOmitted() && !(refuses_empty && given.type() == VT_EMPTY);
        return omitted ? T() : T(argument<typename T::value_type>(given));
    } else if constexpr (std::same_as<T, Variant>) {
        return given;
    } else if constexpr (std::same_as<T, Ptr<IDispatch>>) {
        return given.toObject();
    } else if constexpr (std::same_as<T, bool>) {
        return plain(given).toBool();
    } else if constexpr (std::same_as<T, std::int16_t>) {
        return plain(given).toInt16();
    } else if constexpr (std::same_as<T, std::int32_t>) {
        return plain(given).toInt32();
    } else if constexpr (std::same_as<T, double>) {
        return plain(given).toDouble();
    } else if constexpr (std::same_as<T, std::u16string>) {
        return plain(given).toText();
    } else {
        return T::of(given);
    }
}

// One call of a member on its way in.
class Call {
  public:
    // Copies the arguments into their declared order; those left out are Variant::omitted().
    Call(Served& object, const Member& member, bool put, const DISPPARAMS& given);

    // All arguments as the types of a std::tuple. May call the caller back.
    template <class Tuple>
    Tuple values() {
        return read(std::type_identity<Tuple>());
    }
    const std::vector<Variant>& arguments() const { return arguments_; }
    // To be called when the arguments are values: tells the object that it is entered, and gives it.
    Served& enter();
    // Where the caller put the argument that was read last.
    UINT lastRead() const { return read_ == 0 ? 0 : places_[read_ - 1]; }

  private:
    template <class... T>
    std::tuple<T...> read(std::type_identity<std::tuple<T...>>) {
        read_ = 0;
        return std::tuple<T...>{next<T>()...}; // in this order
    }
    template <class T>
    T next() {
        return argument<T>(arguments_[read_++]);
    }

    Served& object_;
    const Member& member_;
    std::vector<Variant> arguments_;
    std::vector<UINT> places_;
    std::size_t read_ = 0;
};

// The class, the arguments and the result of a member function, or of a function object that takes the object first.
template <class F>
struct Signature;
template <class Class, class R, class... A>
struct Signature<R (Class::*)(A...)> {
    using Object = Class;
    using Values = std::tuple<std::remove_cvref_t<A>...>;
    using Result = R;
};
template <class Class, class R, class... A>
struct Signature<R (Class::*)(A...) const> : Signature<R (Class::*)(A...)> {};
template <class F>
    requires requires { &F::operator(); }
struct Signature<F> {
    template <class Lambda, class R, class First, class... A>
    static Signature<R (std::remove_cvref_t<First>::*)(A...)> of(R (Lambda::*)(First, A...) const);
    using Found = decltype(of(&F::operator()));
    using Object = typename Found::Object;
    using Values = typename Found::Values;
    using Result = typename Found::Result;
};

template <class F>
using ObjectOf = typename Signature<F>::Object;
template <class F>
inline constexpr std::size_t arity = std::tuple_size_v<typename Signature<F>::Values>;

// How many of the first `named` parameters may not be left out; none that may stands before one that may not.
template <class F, std::size_t named>
consteval std::size_t requiredOf() {
    return []<std::size_t... i>(std::index_sequence<i...>) {
        constexpr std::array<bool, sizeof...(i) + 1> optional{
            IsOptional<std::tuple_element_t<i, typename Signature<F>::Values>>::value..., true};
        std::size_t count = 0;
        while (!optional[count]) {
            ++count;
        }
        for (std::size_t rest = count; rest < sizeof...(i); ++rest) {
            if (!optional[rest]) {
                throw "an argument that may be left out stands before one that may not";
            }
        }
        return count;
    }
    (std::make_index_sequence<named>());
}

template <class F>
Action actionOf(F function) {
    return [function](Call& call) -> Variant {
        auto values = call.values<typename Signature<F>::Values>();
        auto& object = static_cast<ObjectOf<F>&>(call.enter());
        const auto run = [&](auto&... value) -> decltype(auto) {
            return std::invoke(function, object, std::move(value)...);
        };
        if constexpr (std::is_void_v<typename Signature<F>::Result>) {
            std::apply(run, values);
            return {};
        } else {
            return Variant(std::apply(run, values));
        }
    };
}

// A member of the objects of class T, and of those that derive from it.
template <class T>
struct Row : Member {
    explicit Row(Member member) : Member(std::move(member)) {}
    template <class Base>
        requires std::derived_from<T, Base>
    Row(const Row<Base>& inherited) : Member(inherited) {}
};

template <std::size_t N>
using Names = const wchar_t* const (&)[N];

template <class F>
Row<ObjectOf<F>> method(const wchar_t* name, DISPID id, F run) {
    static_assert(arity<F> == 0, "each argument has its name");
    return Row<ObjectOf<F>>({name, id, {}, 0, {}, {}, actionOf(run)});
}
template <class F, std::size_t N>
Row<ObjectOf<F>> method(const wchar_t* name, DISPID id, F run, Names<N> names) {
    static_assert(arity<F> == N, "each argument has its name");
    return Row<ObjectOf<F>>({name, id, {names, names + N}, requiredOf<F, N>(), {}, {}, actionOf(run)});
}

template <class Get>
Row<ObjectOf<Get>> property(const wchar_t* name, DISPID id, Get get) {
    static_assert(arity<Get> == 0, "each argument has its name");
    return Row<ObjectOf<Get>>({name, id, {}, 0, actionOf(get), {}, {}});
}
template <class Get, std::size_t N>
Row<ObjectOf<Get>> property(const wchar_t* name, DISPID id, Get get, Names<N> names) {
    static_assert(arity<Get> == N, "each argument has its name");
    return Row<ObjectOf<Get>>({name, id, {names, names + N}, requiredOf<Get, N>(), actionOf(get), {}, {}});
}

// Of two classes the one that derives from the other.
template <class A, class B>
using Derived = std::conditional_t<std::derived_from<A, B>, A, B>;

template <class Get, class Put>
Row<Derived<ObjectOf<Get>, ObjectOf<Put>>> property(const wchar_t* name, DISPID id, Get get, Put put) {
    static_assert(arity<Get> == 0 && arity<Put> == 1, "each argument has its name, but the new value");
    return Row<Derived<ObjectOf<Get>, ObjectOf<Put>>>({name, id, {}, 0, actionOf(get), actionOf(put), {}});
}
template <class Get, class Put, std::size_t N>
Row<Derived<ObjectOf<Get>, ObjectOf<Put>>> property(const wchar_t* name, DISPID id, Get get, Put put, Names<N> names) {
    static_assert(arity<Get> == N && arity<Put> == N + 1, "each argument has its name, but the new value");
    return Row<Derived<ObjectOf<Get>, ObjectOf<Put>>>(
        {name, id, {names, names + N}, requiredOf<Get, N>(), actionOf(get), actionOf(put), {}});
}

// The table of a class.
template <class T>
class Members {
  public:
    Members(std::initializer_list<Row<T>> rows) : rows_(rows.begin(), rows.end()) {}
    // Those of a base, and the class's own.
    template <class Base>
        requires std::derived_from<T, Base>
    Members(const Members<Base>& inherited, std::initializer_list<Row<T>> rows) {
        const std::span<const Member> first = inherited;
        rows_.assign(first.begin(), first.end());
        rows_.insert(rows_.end(), rows.begin(), rows.end());
    }
    operator std::span<const Member>() const { return rows_; }

  private:
    std::vector<Member> rows_;
};

// Base of every object served. Errors that a member throws become the call's result: dispatch errors (DISP_E_…) as they
// are, others as an exception with its description.
class Served : public Counted<IDispatch> {
  public:
    Served();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO* exception, UINT* wrong_argument) override;

    // Objects of this kind alive in the process, and locks on its classes, with `changed` called when the number
    // changes.
    static long alive();
    static void onAliveChanged(std::function<void(long)> changed);
    static void countAlive(long change);

  protected:
    ~Served() override;
    virtual std::span<const Member> members() const = 0;
    // Called before a member is carried out, when its arguments are values; an Error thrown is the call's result.
    virtual void entering(const Member&) {}
    // The object's interface in the type library of the program; null where it has none there.
    virtual const Interface* published() const { return nullptr; }
    // Further interfaces; not counted. Null where there is none.
    virtual void* interfaceFor(REFIID) { return nullptr; }

  private:
    friend class Call;
    class ErrorSupport;

    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IDispatch); }
    void* dualFor(REFIID iid);
    bool publishes(REFIID iid) const;

    // Made when they are asked for.
    std::unique_ptr<DualInterface> dual_;
    std::unique_ptr<ErrorSupport> errors_;
};

// New object with one reference, owned by the result.
template <class T, class... Arguments>
Ptr<T> make(Arguments&&... arguments) {
    return Ptr<T>::adopt(new T(std::forward<Arguments>(arguments)...));
}

// Is told of the enumerators that a client comes to hold, so that they can be taken from one that died.
class Holder {
  public:
    virtual ~Holder() = default;
    virtual void joined(IUnknown* object) = 0;
    virtual void left(IUnknown* object) = 0;
};

// An IEnumVARIANT over a copy of the values, as an IUnknown in a Variant (for the member -4). It is alive as other
// objects are.
Variant enumerate(std::vector<Variant> values, std::shared_ptr<Holder> holder = nullptr);

} // namespace murmelix::com
