#include "ads/config_node.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "config/shared_attributes.h"

namespace ads {

namespace {
bool SameName(const std::string& a, const char* b) {
    return b != nullptr && *b != '\0' && !a.empty() && a == b;
}
}  // namespace

ConfigNode::ConfigNode(std::string name) : name_(std::move(name)) {}

ConfigNode::~ConfigNode() {
    if (parent_ != nullptr) parent_->DetachChild(this);
    ClearChildren();
    ClearAttributes();
}

const std::string& ConfigNode::Attribute::Name() const { return pair_->name; }
const std::string& ConfigNode::Attribute::Value() const { return pair_->value; }

const std::vector<ConfigNode::Attribute>& ConfigNode::Attributes() const {
    return frozen_ != nullptr ? frozen_->items : attributes_;
}

void ConfigNode::OwnAttributes() {
    if (frozen_ == nullptr) return;
    attributes_.reserve(frozen_->items.size());
    for (const Attribute& a : frozen_->items) {
        Attribute own;
        own.pair_ = detail::ShareAttribute(a.pair_);
        attributes_.push_back(own);
    }
    detail::ReleaseList(frozen_);
    frozen_ = nullptr;
}

ConfigNode::Attribute* ConfigNode::FindAttribute(const char* name) const {
    if (name == nullptr || *name == '\0') return nullptr;
    // The length once, then lengths before bytes: a node may hold hundreds
    // of attributes (a pair per target on a file's settings).
    const size_t length = std::strlen(name);
    for (const Attribute& a : Attributes()) {
        const std::string& n = a.pair_->name;
        if (n.size() == length && std::memcmp(n.data(), name, length) == 0) return const_cast<Attribute*>(&a);
    }
    return nullptr;
}

const char* ConfigNode::GetAttribute(const char* name) const {
    const Attribute* a = FindAttribute(name);
    return a ? a->pair_->value.c_str() : nullptr;
}

const char* ConfigNode::GetAttributeInt(const char* name, int32_t* value) const {
    const char* text = GetAttribute(name);
    if (value != nullptr) *value = text ? std::atoi(text) : 0;
    return text;
}

const char* ConfigNode::GetAttributeDouble(const char* name, double* value) const {
    const char* text = GetAttribute(name);
    if (value != nullptr) *value = text ? std::atof(text) : 0.0;
    return text;
}

void ConfigNode::SetAttribute(const char* name, const char* value) {
    if (name == nullptr) return;
    // The new pair is taken before the old one goes: value may point into it.
    const detail::SharedAttribute* pair = detail::AcquireAttribute(name, value ? value : "");
    OwnAttributes();
    if (Attribute* a = FindAttribute(name)) {
        detail::ReleaseAttribute(a->pair_);
        a->pair_ = pair;
        return;
    }
    Attribute a;
    a.pair_ = pair;
    attributes_.push_back(a);
}

void ConfigNode::SetAttributeInt(const char* name, int32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, "%d", value);
    SetAttribute(name, text);
}

const ConfigNode::Attribute* ConfigNode::FirstAttribute() const {
    const std::vector<Attribute>& all = Attributes();
    return all.empty() ? nullptr : all.data();
}

const ConfigNode::Attribute* ConfigNode::NextAttribute(const Attribute* a) const {
    const std::vector<Attribute>& all = Attributes();
    if (a == nullptr || a + 1 >= all.data() + all.size()) return nullptr;
    return a + 1;
}

size_t ConfigNode::AttributeCount() const { return Attributes().size(); }

void ConfigNode::ClearAttributes() {
    detail::ReleaseList(frozen_);
    frozen_ = nullptr;
    for (const Attribute& a : attributes_) detail::ReleaseAttribute(a.pair_);
    // The block goes too: a cleared node is most often refilled by a copy.
    std::vector<Attribute>().swap(attributes_);
}

void ConfigNode::CopyAttributesFrom(const ConfigNode& other) {
    if (&other == this) return;
    ClearAttributes();
    if (other.frozen_ != nullptr) frozen_ = detail::ShareList(other.frozen_);
    if (frozen_ != nullptr) return;
    const std::vector<Attribute>& from = other.Attributes();
    if (from.empty()) return;
    std::vector<Attribute> copy;
    copy.reserve(from.size());
    for (const Attribute& a : from) {
        Attribute c;
        c.pair_ = detail::ShareAttribute(a.pair_);
        copy.push_back(c);
    }
    frozen_ = detail::AcquireList(&copy);
}

void ConfigNode::AppendChild(ConfigNode* child) {
    if (child == nullptr || child == this) return;
    if (child->parent_ != nullptr) child->parent_->DetachChild(child);
    child->parent_ = this;
    child->prev_sibling_ = last_child_;
    child->next_sibling_ = nullptr;
    if (last_child_ != nullptr) {
        last_child_->next_sibling_ = child;
    } else {
        first_child_ = child;
    }
    last_child_ = child;
}

void ConfigNode::InsertChildBefore(ConfigNode* child, ConfigNode* before) {
    if (child == nullptr || child == this || child == before) return;
    if (before == nullptr || before->parent_ != this) {
        AppendChild(child);
        return;
    }
    if (child->parent_ != nullptr) child->parent_->DetachChild(child);
    child->parent_ = this;
    child->next_sibling_ = before;
    child->prev_sibling_ = before->prev_sibling_;
    if (before->prev_sibling_) {
        before->prev_sibling_->next_sibling_ = child;
    } else {
        first_child_ = child;
    }
    before->prev_sibling_ = child;
}

ConfigNode* ConfigNode::FindChild(const char* name) const {
    for (ConfigNode* c = first_child_; c != nullptr; c = c->next_sibling_) {
        if (SameName(c->name_, name)) return c;
    }
    return nullptr;
}

bool ConfigNode::DetachChild(ConfigNode* child) {
    if (child == nullptr || child->parent_ != this) return false;
    if (child->prev_sibling_) {
        child->prev_sibling_->next_sibling_ = child->next_sibling_;
    } else {
        first_child_ = child->next_sibling_;
    }
    if (child->next_sibling_) {
        child->next_sibling_->prev_sibling_ = child->prev_sibling_;
    } else {
        last_child_ = child->prev_sibling_;
    }
    child->parent_ = child->prev_sibling_ = child->next_sibling_ = nullptr;
    return true;
}

bool ConfigNode::RemoveChild(ConfigNode* child) {
    if (!DetachChild(child)) return false;
    delete child;
    return true;
}

void ConfigNode::ClearChildren() {
    // Destroys the subtree without recursion: before a child is destroyed its
    // own children are moved up into this node's list, right behind it, so
    // every destructor that runs sees a node without children.
    while (ConfigNode* c = first_child_) {
        if (ConfigNode* f = c->first_child_) {
            ConfigNode* l = c->last_child_;
            for (ConfigNode* n = f; n != nullptr; n = n->next_sibling_) n->parent_ = this;
            l->next_sibling_ = c->next_sibling_;
            if (c->next_sibling_) {
                c->next_sibling_->prev_sibling_ = l;
            } else {
                last_child_ = l;
            }
            c->next_sibling_ = f;
            f->prev_sibling_ = c;
            c->first_child_ = c->last_child_ = nullptr;
        }
        DetachChild(c);
        delete c;
    }
}

ConfigNode* ConfigNode::Root() {
    ConfigNode* n = this;
    while (n->parent_ != nullptr) n = n->parent_;
    return n;
}

namespace {
ConfigNode* ShallowCopy(const ConfigNode& src) {
    auto* copy = new ConfigNode(src.Name());
    copy->SetUserWord(src.UserWord());
    // Record by record: an empty name is kept even though it can never be
    // found, and repeated empty names stay repeated.
    copy->CopyAttributesFrom(src);
    return copy;
}
}  // namespace

ConfigNode* ConfigNode::Clone() const {
    std::unique_ptr<ConfigNode> root(ShallowCopy(*this));
    // Pre-order walk of the source with d always the copy of s.
    const ConfigNode* s = this;
    ConfigNode* d = root.get();
    for (;;) {
        if (s->first_child_ != nullptr) {
            s = s->first_child_;
            ConfigNode* c = ShallowCopy(*s);
            d->AppendChild(c);
            d = c;
            continue;
        }
        while (s != this && s->next_sibling_ == nullptr) {
            s = s->parent_;
            d = d->parent_;
        }
        if (s == this) break;
        s = s->next_sibling_;
        ConfigNode* c = ShallowCopy(*s);
        d->parent_->AppendChild(c);
        d = c;
    }
    return root.release();
}

void WalkTree(ConfigNode* start, const WalkCallback& callback) {
    // The walk is defined recursively:
    //   Walk(n): for (cur = n; cur; cur = cur->first child) {
    //              if (callback(cur)) break;
    //              Walk(cur->next sibling);
    //            }
    // Each open call ("frame") has moved from its start node down a chain of
    // first children; a frame other than the outermost starts at a node that
    // has a previous sibling, and its caller waits at that previous sibling.
    // So the frames can be found again from the tree itself and no stack is
    // needed at all.
    if (start == nullptr) return;
    ConfigNode* cur = start;
    bool resuming = false;  // back in the frame at cur after its sibling walk
    for (;;) {
        bool frame_done = false;
        if (!resuming) {
            if (callback(cur)) {
                frame_done = true;
            } else if (cur->NextSibling() != nullptr) {
                cur = cur->NextSibling();  // open the sibling walk
                continue;
            }
        }
        resuming = false;
        if (!frame_done) {
            if (cur->FirstChild() != nullptr) {
                cur = cur->FirstChild();
                continue;
            }
        }
        // The frame that holds cur has ended: climb to its start.
        ConfigNode* s = cur;
        while (s != start && s->PrevSibling() == nullptr) s = s->Parent();
        if (s == start) return;
        cur = s->PrevSibling();
        resuming = true;
    }
}

}  // namespace ads
