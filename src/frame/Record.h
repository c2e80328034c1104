#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

/// How a record describes itself to the codec. A record is a plain struct with defaulted equality; it names
/// each field once, in declared order:
///
///     template <Is<Example> Record>
///     inline constexpr auto fieldsOf<Record> = fields(field("id", &Record::id), ...);
///
/// It is a template, so that only sources that read or write the record pay for its table when they are
/// built. A std::optional member may be missing or null in JSON and is left out when absent. Every other
/// member is required, unless missingTakesDefault<Record> is true.
namespace nimbrelle {

template <class Record, class Member> struct Field {
    std::string_view key;
    Member Record::*member;
    bool isLenient = false; ///< a value that can't be read takes the default and spoils nothing else
};

template <class Record, class Member> struct LenientMember {
    Member Record::*member;
};

template <class Record, class Member> constexpr LenientMember<Record, Member> lenient(Member Record::*member)
{
    return {member};
}

template <class Record, class Member> constexpr auto field(std::string_view key, Member Record::*member)
{
    return Field<Record, Member>{key, member, false};
}

template <class Record, class Member>
constexpr auto field(std::string_view key, LenientMember<Record, Member> member)
{
    return Field<Record, Member>{key, member.member, true};
}

template <class... Fields> constexpr std::tuple<Fields...> fields(Fields... fields)
{
    return {fields...};
}

/// The toolkit's code generator can't read <concepts>.
template <class Left, class Right>
concept Is = std::is_same_v<Left, Right>;

template <class Record> inline constexpr std::nullptr_t fieldsOf = nullptr;

/// The fields of a record that derives from another: first those of its base, then its own.
template <class Base, class Record, class... Members>
constexpr auto fieldsWithBase(const std::tuple<Field<Record, Members>...> &own)
{
    const auto inherited = []<class... BaseMembers>(const Field<Base, BaseMembers> &...field) {
        return std::make_tuple(Field<Record, BaseMembers>{field.key, field.member, field.isLenient}...);
    };
    return std::tuple_cat(std::apply(inherited, fieldsOf<Base>), own);
}

template <class Record> inline constexpr bool missingTakesDefault = false;

/// Names a member whose own fields are in the same flat object as those of the record around it.
template <class Record> inline constexpr std::nullptr_t flattenedOf = nullptr;

/// The case names of a stored enumeration whose values count from 0:
///
///     template <> inline constexpr auto caseNames<Stage> = cases("seen", "learning", ...);
template <class Enum> inline constexpr std::nullptr_t caseNames = nullptr;

template <class... Names> constexpr std::array<std::string_view, sizeof...(Names)> cases(Names... names)
{
    return {std::string_view{names}...};
}

template <class Enum> constexpr std::string_view caseName(Enum value)
{
    return caseNames<Enum>[static_cast<std::size_t>(value)];
}

template <class Enum> inline constexpr std::size_t caseCount = caseNames<Enum>.size();

/// All cases in declared order.
template <class Enum> constexpr std::array<Enum, caseCount<Enum>> allCases()
{
    std::array<Enum, caseCount<Enum>> all{};
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<Enum>(i);
    return all;
}

} // namespace nimbrelle
