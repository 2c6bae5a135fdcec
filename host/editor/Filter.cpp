#include "host/editor/Filter.h"

#include <acutads.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/editor/EntityGroups.h"
#include "host/editor/ResultBuffers.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

constexpr int operatorCode = -4;

// Reals of a filter are rarely typed to the last digit.
constexpr double equalWithin = 1e-6;

// Groups are read, tried and given up one inside the other.
constexpr int deepestGroups = 200;

bool compare(const std::wstring& relation, double a, double b) {
    const bool equal = std::fabs(a - b) <= equalWithin * std::max(1.0, std::fabs(b));
    if (relation == L"=") return equal;
    if (relation == L"!=" || relation == L"/=" || relation == L"<>") return !equal;
    if (relation == L"<") return a < b;
    if (relation == L"<=") return a <= b;
    if (relation == L">") return a > b;
    if (relation == L">=") return a >= b;
    return true;  // "*"
}

bool isRelation(const std::wstring& text) {
    static const wchar_t* const relations[] = {L"=",  L"!=", L"/=", L"<>", L"<",
                                               L"<=", L">",  L">=", L"*"};
    return std::any_of(std::begin(relations), std::end(relations),
                       [&](const wchar_t* relation) { return text == relation; });
}

bool isBitTest(const std::wstring& text) {
    return text == L"&" || text == L"&=";
}

}  // namespace

// A test of one group, or a combination of nodes.
struct Filter::Node {
    enum class Kind { test, all, any, one, none };
    Kind kind = Kind::test;
    std::vector<std::shared_ptr<const Node>> parts;
    int code = 0;
    std::vector<std::wstring> relations{L"="};  // one, or one for each coordinate
    GroupValue wanted;

    bool passes(const EntityGroups& groups) const;
    bool testPasses(const GroupValue& value) const;
};

bool Filter::Node::testPasses(const GroupValue& value) const {
    if (const auto* pattern = std::get_if<std::wstring>(&wanted)) {
        const auto* text = std::get_if<std::wstring>(&value);
        if (text == nullptr) return false;
        return acutWcMatchEx(text->c_str(), pattern->c_str(), true);
    }
    if (const auto* point = std::get_if<AcGePoint3d>(&wanted)) {
        const auto* at = std::get_if<AcGePoint3d>(&value);
        if (at == nullptr) return false;
        const auto relation = [&](std::size_t axis) {
            return relations.size() == 1     ? relations[0]
                   : axis < relations.size() ? relations[axis]
                                             : L"*";
        };
        return compare(relation(0), at->x, point->x) && compare(relation(1), at->y, point->y) &&
               compare(relation(2), at->z, point->z);
    }
    if (isBitTest(relations[0])) {
        const auto* bits = std::get_if<long long>(&value);
        const auto* mask = std::get_if<long long>(&wanted);
        if (bits == nullptr || mask == nullptr) return false;
        return relations[0] == L"&" ? (*bits & *mask) != 0 : (*bits & *mask) == *mask;
    }
    const auto number = [](const GroupValue& v) -> std::optional<double> {
        if (const auto* real = std::get_if<double>(&v)) return *real;
        if (const auto* whole = std::get_if<long long>(&v)) return static_cast<double>(*whole);
        return std::nullopt;
    };
    const auto a = number(value);
    const auto b = number(wanted);
    return a && b && compare(relations[0], *a, *b);
}

bool Filter::Node::passes(const EntityGroups& groups) const {
    const auto passing = [&](const auto& part) { return part->passes(groups); };
    switch (kind) {
        case Kind::all:
            return std::all_of(parts.begin(), parts.end(), passing);
        case Kind::any:
            return std::any_of(parts.begin(), parts.end(), passing);
        case Kind::one:
            return std::count_if(parts.begin(), parts.end(), passing) == 1;
        case Kind::none:
            return std::none_of(parts.begin(), parts.end(), passing);
        default:
            break;
    }
    const std::vector<GroupValue> values = groups.values(code);
    return std::any_of(values.begin(), values.end(),
                       [&](const GroupValue& value) { return testPasses(value); });
}

// Walks a chain once.
class Filter::Reader {
  public:
    Reader(const resbuf* chain, std::wstring& problem) : at_(chain), problem_(problem) {}

    std::optional<std::vector<std::shared_ptr<const Node>>> all() {
        auto nodes = untilEnd();
        if (nodes && at_ != nullptr) {
            problem_ = std::wstring(L"a filter ends a group that it has not begun: ") +
                       at_->resval.rstring;
            return std::nullopt;
        }
        return nodes;
    }

  private:
    using Nodes = std::vector<std::shared_ptr<const Node>>;

    bool isOperator() const {
        return at_->restype == operatorCode && at_->resval.rstring != nullptr;
    }

    // The nodes up to an operator that ends a group ("AND>"), which is left standing, or to the end
    // of the chain.
    std::optional<Nodes> untilEnd() {
        Nodes nodes;
        while (at_ != nullptr) {
            if (isOperator()) {
                const std::wstring name = upperCase(at_->resval.rstring);
                if (name.size() > 2 && name.back() == L'>') return nodes;
                const auto node =
                    name.size() > 2 && name.front() == L'<' ? group(name) : relation(name);
                if (!node) return std::nullopt;
                nodes.push_back(node);
            } else {
                const auto node = test({L"="});
                if (!node) return std::nullopt;
                nodes.push_back(node);
            }
        }
        return nodes;
    }

    std::shared_ptr<const Node> group(const std::wstring& begin) {
        auto node = std::make_shared<Node>();
        const std::wstring name = begin.substr(1);
        if (name == L"AND")
            node->kind = Node::Kind::all;
        else if (name == L"OR")
            node->kind = Node::Kind::any;
        else if (name == L"XOR")
            node->kind = Node::Kind::one;
        else if (name == L"NOT")
            node->kind = Node::Kind::none;
        else
            return fail(L"a filter has no operator " + begin);
        if (depth_ == deepestGroups) {
            return fail(L"the groups of a filter are nested more than " +
                        std::to_wstring(deepestGroups) + L" deep");
        }
        at_ = at_->rbnext;
        const std::wstring end = name + L">";
        ++depth_;
        auto parts = untilEnd();
        --depth_;
        if (!parts) return nullptr;
        if (at_ == nullptr || upperCase(at_->resval.rstring) != end) {
            return fail(L"the group " + begin + L" of a filter has no end " + end);
        }
        at_ = at_->rbnext;
        const std::size_t count = parts->size();
        if (count == 0 || (name == L"XOR" && count != 2) || (name == L"NOT" && count != 1)) {
            return fail(L"the group " + begin + L" of a filter has " + std::to_wstring(count) +
                        L" parts");
        }
        node->parts = std::move(*parts);
        return node;
    }

    std::shared_ptr<const Node> relation(const std::wstring& name) {
        if (name.empty()) return fail(L"an operator of a filter is empty");
        std::vector<std::wstring> relations = split(name, L',');
        const bool known =
            isBitTest(name) || std::all_of(relations.begin(), relations.end(), isRelation);
        if (!known || relations.size() > 3) return fail(L"a filter has no operator " + name);
        at_ = at_->rbnext;
        if (at_ == nullptr || isOperator())
            return fail(L"the operator " + name + L" of a filter has no value");
        return test(std::move(relations));
    }

    std::shared_ptr<const Node> test(std::vector<std::wstring> relations) {
        auto node = std::make_shared<Node>();
        node->code = at_->restype == RTDXF0 ? 0 : at_->restype;
        node->relations = std::move(relations);
        const ads_u_val& value = at_->resval;
        switch (node->code < 0 ? ValueKind::unknown : valueKind(at_->restype)) {
            case ValueKind::text:
                node->wanted = std::wstring(value.rstring == nullptr ? L"" : value.rstring);
                break;
            case ValueKind::real:
                node->wanted = value.rreal;
                break;
            case ValueKind::point:
                node->wanted = AcGePoint3d(value.rpoint[0], value.rpoint[1], value.rpoint[2]);
                break;
            case ValueKind::int16:
                node->wanted = static_cast<long long>(value.rint);
                break;
            case ValueKind::int32:
                node->wanted = static_cast<long long>(value.rlong);
                break;
            case ValueKind::int64:
                node->wanted = static_cast<long long>(value.mnInt64);
                break;
            default:
                return fail(L"a filter can't test group " + std::to_wstring(at_->restype));
        }
        at_ = at_->rbnext;
        return node;
    }

    std::shared_ptr<const Node> fail(std::wstring problem) {
        problem_ = std::move(problem);
        return nullptr;
    }

    const resbuf* at_;
    std::wstring& problem_;
    int depth_ = 0;  // of the groups that have begun
};

Filter::Filter() = default;

bool Filter::read(const resbuf* chain, std::wstring& problem) {
    auto nodes = Reader(chain, problem).all();
    if (!nodes) return false;
    all_ = std::move(*nodes);
    return true;
}

bool Filter::passes(AcDbObjectId entity) const {
    const EntityGroups groups(entity);
    return std::all_of(all_.begin(), all_.end(),
                       [&](const auto& node) { return node->passes(groups); });
}

}  // namespace host::editor
