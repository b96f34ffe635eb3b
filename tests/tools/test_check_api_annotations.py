"""Slots with and without what a host must be told of them."""
import check_api_annotations
import pytest

API = "ChromiumEmbeddedPlugin/api"
HEADER = """// The table of tests.{head}
#include "orbcefrecords.h"

// About the struct.{about}
typedef struct orbcefthing_c orbcefthing_c;
struct orbcefthing_c {{
  // The module's own.
  void* instance;
{slot}
}};
"""


def problems(tree, slot, head="", about=""):
    tree.write(f"{API}/orbcefrecords.h", "// Records given are lent.\n#include <stdint.h>\n")
    tree.write(f"{API}/orbcefthing.h", HEADER.format(slot=slot, head=head, about=about))
    return check_api_annotations.find_problems(tree.root)


@pytest.mark.parametrize(
    "tag", ["main", "ui", "io", "file", "renderer", "any", "any & !closing", "main & tools set"]
)
def test_accepts_each_thread_and_its_states(tree, tag):
    assert problems(tree, f"  // Does it. [{tag}]\n  void (*run)(orbcefthing_c* self);") == []


@pytest.mark.parametrize(
    "comment, text",
    [
        ("", "there is no comment"),
        ("  // Does it.\n", "does not end in a thread tag"),
        ("  // Does it. [main]\n  // And more.\n", "does not end in a thread tag"),
        ("  // Does it. [gpu]\n", "begins with no thread"),
        ("  // Does it. [!closing & main]\n", "begins with no thread"),
        ("  // Does it. [main & ]\n", "a state that cannot be read"),
    ],
)
def test_refuses_a_slot_without_a_thread_tag(tree, comment, text):
    found = problems(tree, f"{comment}  void (*run)(orbcefthing_c* self);")
    assert len(found) == 1
    assert "orbcefthing_c.run" in found[0] and text in found[0]


def test_a_comment_belongs_to_one_slot_only(tree):
    slots = "  // Does it. [any]\n  void (*run)(orbcefthing_c* self);\n  void (*stop)(void);"
    found = problems(tree, slots)
    assert len(found) == 1
    assert "orbcefthing_c.stop: there is no comment" in found[0]


def test_the_table_itself_needs_no_word(tree):
    assert problems(tree, "  // Does it. [any]\n  void (*run)(orbcefthing_c* self, int32_t n);") == []


TWO_LINES = "  void (*run)(orbcefthing_c* self,\n              const void* data);"


def test_pointer_needs_ownership_and_null(tree):
    found = problems(tree, f"  // Does it. [any]\n{TWO_LINES}")
    assert [text.split(": ", 2)[2] for text in found] == [
        "nothing tells who owns const void* data",
        "nothing tells about null for const void* data",
    ]
    assert found[0].startswith(f"{API}/orbcefthing.h:10: ")


@pytest.mark.parametrize(
    "where",
    [
        {"slot": "  // Takes `data`, lent, never null. [any]\n" + TWO_LINES},
        {"slot": "  // Does it. [any]\n" + TWO_LINES, "about": " Data is lent, never null."},
        {"slot": "  // Does it. [any]\n" + TWO_LINES, "head": " Data is lent, never null."},
    ],
)
def test_pointer_rules_may_stand_in_slot_struct_or_head(tree, where):
    assert problems(tree, **where) == []


def test_records_follow_the_rule_of_their_own_header(tree):
    slot = "  // Null is empty. [any]\n  void (*run)(orbcefthing_c* self, orbcefstring_c* text);"
    assert problems(tree, slot) == []


def test_results_count_too(tree):
    found = problems(tree, "  // Makes it. [any]\n  void* (*make)(orbcefthing_c* self);")
    assert len(found) == 2
    assert all("the result void*" in text for text in found)


def test_function_pointer_arguments_are_one_argument(tree):
    slot = "  // Posts. [any]\n  void (*post)(void (*task)(void*, int), int32_t count);"
    found = problems(tree, slot)
    assert [text.split(": ", 2)[2] for text in found] == [
        "nothing tells who owns void (*task)(void*, int)",
        "nothing tells about null for void (*task)(void*, int)",
    ]


def test_a_tree_without_slots_is_a_problem(tree):
    assert check_api_annotations.find_problems(tree.root) == [f"{API}: there is no header"]
    tree.write(f"{API}/empty.h", "// Nothing.\n")
    assert check_api_annotations.find_problems(tree.root) == [f"{API}: there is no slot"]
