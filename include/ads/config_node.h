// A node of the host's project tree: a name, a user word, an ordered list of
// text attributes and an ordered list of children. The host owns the tree; the
// plug-in reads it and changes it only by committing an edited clone.
//
// Host and plug-in both link this class, each its own copy. Only the
// destructor is virtual, so a node is always freed by the module that made it,
// while every other operation runs in the module that calls it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ads {

namespace detail {
struct SharedAttribute;
struct SharedList;
class TextStore;
}  // namespace detail

class ConfigNode {
public:
    explicit ConfigNode(std::string name = std::string());
    virtual ~ConfigNode();

    ConfigNode(const ConfigNode&) = delete;
    ConfigNode& operator=(const ConfigNode&) = delete;

    std::string GetName() const { return name_; }
    const std::string& Name() const { return name_; }

    // The value's text, "" for an attribute stored with an empty value, and
    // null when no attribute of that name exists. An empty name never matches.
    const char* GetAttribute(const char* name) const;
    // As GetAttribute; *value receives atoi of the text, or 0 when absent.
    const char* GetAttributeInt(const char* name, int32_t* value) const;
    // As GetAttribute; *value receives atof of the text, or 0.0 when absent.
    const char* GetAttributeDouble(const char* name, double* value) const;

    // Replaces the value of an existing attribute in place, else appends.
    void SetAttribute(const char* name, const char* value);
    void SetAttribute(const std::string& name, const std::string& value) {
        SetAttribute(name.c_str(), value.c_str());
    }
    void SetAttributeInt(const char* name, int32_t value);

    // The node becomes the last child. A node that still has a parent is
    // unlinked from it first, so a node is never in two child lists.
    void AppendChild(ConfigNode* child);
    // Inserts the child in front of `before` (a child of this node), or last
    // when `before` is null or not a child of this node.
    void InsertChildBefore(ConfigNode* child, ConfigNode* before);
    ConfigNode* FindChild(const char* name) const;
    // False when child's parent is not this node; else unlinks and destroys it.
    bool RemoveChild(ConfigNode* child);
    // Unlinks a child without destroying it; the caller owns it afterwards.
    bool DetachChild(ConfigNode* child);

    // Deep copy: name, user word, attributes and children in order; the copy
    // has no parent. Works without recursion, whatever the depth.
    ConfigNode* Clone() const;

    ConfigNode* Parent() const { return parent_; }
    ConfigNode* FirstChild() const { return first_child_; }
    ConfigNode* LastChild() const { return last_child_; }
    ConfigNode* PrevSibling() const { return prev_sibling_; }
    ConfigNode* NextSibling() const { return next_sibling_; }
    ConfigNode* Root();

    uintptr_t UserWord() const { return user_word_; }
    void SetUserWord(uintptr_t word) { user_word_ = word; }

    // Attribute iteration in insertion order. A pointer stays valid until
    // the node gains or loses an attribute; replacing a value keeps it.
    class Attribute {
    public:
        const std::string& Name() const;
        const std::string& Value() const;

    private:
        friend class ConfigNode;
        friend class detail::TextStore;
        const detail::SharedAttribute* pair_;
    };
    const Attribute* FirstAttribute() const;
    const Attribute* NextAttribute(const Attribute* a) const;
    size_t AttributeCount() const;
    // Removes every attribute (used by the host when it commits an edit).
    void ClearAttributes();
    // Makes this node's attributes a copy of other's, in their order, in
    // one pass (other's names are already unique, so none is looked up).
    void CopyAttributesFrom(const ConfigNode& other);
    // Destroys every child, without recursion.
    void ClearChildren();

private:
    Attribute* FindAttribute(const char* name) const;
    const std::vector<Attribute>& Attributes() const;
    // Before a change: a shared list becomes the node's own.
    void OwnAttributes();

    std::string name_;
    uintptr_t user_word_ = 0;
    ConfigNode* parent_ = nullptr;
    ConfigNode* first_child_ = nullptr;
    ConfigNode* last_child_ = nullptr;
    ConfigNode* prev_sibling_ = nullptr;
    ConfigNode* next_sibling_ = nullptr;
    // Each attribute is a shared name/value pair (config/shared_attributes.h):
    // a project repeats the same few hundred pairs on thousands of nodes.
    // Copies of nodes share their lists (frozen_, then attributes_ is
    // empty) until one of them changes.
    std::vector<Attribute> attributes_;
    const detail::SharedList* frozen_ = nullptr;
};

// Visits a node, then its later siblings with all their descendants, then its
// own descendants. A callback that returns true ends only the loop it was
// called from: the branch is done, the walks of earlier siblings and of the
// ancestors go on. Uses an explicit stack: neither the number of siblings nor
// the depth grows the call stack.
using WalkCallback = std::function<bool(ConfigNode*)>;
void WalkTree(ConfigNode* start, const WalkCallback& callback);

}  // namespace ads
