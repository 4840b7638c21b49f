// Dialogs, child dialogs and forms in one another, as their user knows them: which fields must be filled, and
// so whether OK may be pressed. Tests make the same tree of windows, do the same to both, and compare.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace tov::test {

struct HostField {
    int number = 0;
    bool isEmpty = false;
    bool isHidden = false;
    bool isReadOnly = false;
    bool mayBeEmpty = false;

    bool IsMissing() const { return isEmpty && !isHidden && !isReadOnly && !mayBeEmpty; }
};

struct HostNode {
    int number = 0;
    bool isForm = false;
    bool guards = true;    // its fields; else a dialog that only asks those in it
    bool isSheet = false;  // its children are pages, which all count
    std::vector<HostField> fields;
    std::vector<std::unique_ptr<HostNode>> children;  // the dialogs that take turns
    std::size_t current = 0;
    std::vector<std::unique_ptr<HostNode>> forms;

    HostNode const* Current() const { return children.empty() ? nullptr : children[current].get(); }

    // The field that a guarding host finds: down to others that guard.
    HostField const* FirstMissing() const {
        for (HostField const& field : fields) {
            if (field.IsMissing()) return &field;
        }
        if (HostNode const* const child = Current(); child != nullptr && child->guards) {
            if (HostField const* const field = child->FirstMissing()) return field;
        }
        for (std::size_t i = 0; isSheet && i < children.size(); ++i) {
            if (HostField const* const field = children[i]->FirstMissing()) return field;
        }
        for (auto const& form : forms) {
            if (HostField const* const field = form->FirstMissing()) return field;
        }
        return nullptr;
    }

    // Why OK cannot be pressed; null: it can.
    HostField const* Obstacle() const {
        if (guards) {
            if (HostField const* const field = FirstMissing()) return field;
        }
        if (Current() != nullptr && !isSheet) {
            if (HostField const* const field = Current()->Obstacle()) return field;
        }
        for (auto const& form : forms) {
            if (HostField const* const field = guards ? nullptr : form->Obstacle()) return field;
        }
        return nullptr;
    }

    // What a click on the disabled OK shows: a sheet has each page say what keeps that one, and turns to it.
    HostField const* Show() {
        if (!isSheet) return Obstacle();
        for (std::size_t i = 0; Current()->Obstacle() == nullptr && i < children.size(); ++i) {
            if (children[i]->Obstacle() != nullptr) current = i;
        }
        return Current()->Obstacle();
    }
};

// Does the same to the model and to the windows. Tree has:
//   void SetField(HostField const& wanted);          as the field is to be
//   void Switch(HostNode const& dialog, unsigned child);  or page of the sheet
//   void Settle();                                    delivers what is posted
//   bool IsEnabled(int id);                           OK (1) and Apply (12321) of the root
//   int Focus();                                      number of the field of the root itself with the focus,
//   or -1 int ClickOnDisabled(int id);                      number of the field shown with a tip and the
//   focus, or -1
class HostScript {
 public:
    explicit HostScript(unsigned seed, bool isSheet = false) : m_random(seed) {
        m_root = isSheet ? MakeSheet() : MakeNode(0, false);
    }

    HostNode const& Root() const { return *m_root; }
    std::vector<HostField*> const& Fields() const { return m_fields; }

    template <class Tree>
    void Run(Tree& tree, int steps) {
        for (HostField const* const field : m_fields)
            tree.SetField(*field);
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            SCOPED_TRACE("step " + std::to_string(step));
            Step(tree);
            tree.Settle();
            HostField const* const obstacle = m_root->Obstacle();
            EXPECT_EQ(tree.IsEnabled(1), obstacle == nullptr) << What(obstacle);
            EXPECT_EQ(tree.IsEnabled(12321), obstacle == nullptr);
            if (obstacle == nullptr || Pick(3) != 0) continue;
            // The field that the user is in is shown before all others.
            int const focus = tree.Focus();
            bool const stays = focus >= 0 && m_fields[static_cast<std::size_t>(focus)]->IsMissing();
            EXPECT_EQ(tree.ClickOnDisabled(Pick(2) != 0 ? 1 : 12321), stays ? focus : m_root->Show()->number);
        }
    }

 private:
    static std::string What(HostField const* field) {
        return field != nullptr ? "field " + std::to_string(field->number) + " is missing"
                                : "nothing is missing";
    }

    int Pick(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }

    std::unique_ptr<HostNode> MakeNode(int depth, bool isForm) {
        auto node = std::make_unique<HostNode>();
        node->number = static_cast<int>(m_dialogs.size());
        node->isForm = isForm;
        node->guards = depth == 0 || isForm || Pick(4) != 0;
        m_dialogs.push_back(node.get());
        if (node->guards) node->fields.resize(static_cast<std::size_t>(Pick(3)));
        if (isForm) node->fields.resize(node->fields.size() + 1);
        if (!isForm && depth < 3) {
            for (int i = Pick(4); i > 0; --i)
                node->children.push_back(MakeNode(depth + 1, false));
        }
        for (int i = isForm ? 0 : Pick(3); i > 0; --i)
            node->forms.push_back(MakeNode(depth + 1, true));
        for (HostField& field : node->fields) {
            field.number = static_cast<int>(m_fields.size());
            m_fields.push_back(&field);
        }
        return node;
    }

    std::unique_ptr<HostNode> MakeSheet() {
        auto sheet = std::make_unique<HostNode>();
        sheet->isSheet = true;
        m_dialogs.push_back(sheet.get());
        for (int i = 1 + Pick(4); i > 0; --i)
            sheet->children.push_back(MakeNode(0, false));
        return sheet;
    }

    template <class Tree>
    void Step(Tree& tree) {
        HostNode& node = *m_dialogs[static_cast<std::size_t>(Pick(static_cast<int>(m_dialogs.size())))];
        if (Pick(3) == 0 && node.guards && !node.children.empty()) {
            node.current = static_cast<std::size_t>(Pick(static_cast<int>(node.children.size())));
            tree.Switch(node, static_cast<unsigned>(node.current));
            return;
        }
        if (m_fields.empty()) return;
        HostField& field = *m_fields[static_cast<std::size_t>(Pick(static_cast<int>(m_fields.size())))];
        bool* const properties[] = {&field.isEmpty,  &field.isEmpty,    &field.isEmpty,
                                    &field.isHidden, &field.isReadOnly, &field.mayBeEmpty};
        // Mostly filled, so that OK comes and goes.
        bool& property = *properties[Pick(6)];
        property = &property == &field.isEmpty ? Pick(4) == 0 : !property;
        tree.SetField(field);
    }

    std::mt19937 m_random;
    std::unique_ptr<HostNode> m_root;
    std::vector<HostNode*> m_dialogs;
    std::vector<HostField*> m_fields;
};

}  // namespace tov::test
