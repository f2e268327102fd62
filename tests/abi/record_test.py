#!/usr/bin/env python3
"""That the record tells every change that breaks programs, and that a release binds."""

from __future__ import annotations

import contextlib
import io
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from dataclasses import asdict
from pathlib import Path

sys.dont_write_bytecode = True

import check_slots  # noqa: E402
import record  # noqa: E402
import release  # noqa: E402
from interface import Interface, read_interface  # noqa: E402

COMPILER = sys.argv[1]
WORK = Path(sys.argv[2])  # below the build folder, so that nothing is left elsewhere

HEADER = """
#define API __attribute__((visibility("default")))
enum Colour { kRed, kGreen };
extern API int table[3];
struct API Root {
  virtual ~Root();
  virtual int Get() const = 0;
};
class API Value : public virtual Root {
 public:
  ~Value() override;
  int Get() const override;
  virtual void Set(int);
  virtual void Set(long);
  void Plain();

 private:
  enum Secret { kSecret };
  int number_;
  union { char* text; long number; } held_;
};
class API Other {
 public:
  virtual ~Other();
  virtual int Own();
};
class API Both : public Value, public Other {
 public:
  ~Both() override;
  int Own() override;
};
"""
SOURCE = """
#include <corvane/corvane.h>
int table[3];
Root::~Root() {}
Value::~Value() {}
int Value::Get() const { return 1; }
void Value::Set(int) {}
void Value::Set(long) {}
void Value::Plain() {}
Other::~Other() {}
int Other::Own() { return 1; }
Both::~Both() {}
int Both::Own() { return 2; }
"""


class Scratch(unittest.TestCase):
    def setUp(self) -> None:
        WORK.mkdir(parents=True, exist_ok=True)
        self.folder = Path(tempfile.mkdtemp(dir=WORK))
        self.addCleanup(shutil.rmtree, self.folder)


class TestInterface(Scratch):
    def read(self, changes: dict[str, str] | None = None, soname: str = "libsmall.so.0") -> Interface:
        """Of a small library, after each of the texts has been replaced in its header and source."""
        header, source = HEADER, SOURCE
        for old, new in (changes or {}).items():
            self.assertIn(old, header + source)
            header, source = header.replace(old, new), source.replace(old, new)
        (self.folder / "corvane").mkdir(exist_ok=True)
        (self.folder / "corvane/corvane.h").write_text(header, encoding="utf-8")
        (self.folder / "small.cpp").write_text(source, encoding="utf-8")
        library = self.folder / "libsmall.so"
        subprocess.run([COMPILER, "-shared", "-fPIC", "-fvisibility=hidden", f"-Wl,-soname={soname}",
                        f"-I{self.folder}", self.folder / "small.cpp", "-o", library], check=True)
        return read_interface(COMPILER, "c++17", [self.folder], library, self.folder / "work")

    def changed(self, part: str, changes: dict[str, str]) -> list[str]:
        """What the changes alter in one part of the record, without the lines that tell where."""
        before, now = asdict(self.read()), asdict(self.read(changes))
        found = record.differences({part: before[part]}, {part: now[part]}, ("before", "now"))
        return [line for line in found if not line.startswith(("---", "+++", "@@"))]

    def test_has_the_exports(self) -> None:
        exports = self.read().exports
        self.assertEqual(exports[0], "SONAME libsmall.so.0")
        for line in ("Both::Own() -> int", "Value::Plain() -> void", "Value::~Value() [D0 D1 D2]", "table: 12 bytes",
                     "vtable for Value", "typeinfo for Root", "non-virtual thunk to Both::Own()"):
            self.assertIn(line, exports)

    def test_has_the_layouts(self) -> None:
        self.assertEqual(self.read().layouts, [
            "Both: 32 bytes, 32 as a base, aligned to 8",
            "Both: base Value at 0",
            "Both: base Other at 24",
            "Colour: kRed = 0",
            "Colour: kGreen = 1",
            "Other: 8 bytes, 8 as a base, aligned to 8",
            "Other: at 0 the pointer to its virtual functions",
            "Root: 8 bytes, 8 as a base, aligned to 8",
            "Root: at 0 the pointer to its virtual functions",
            "Value: 24 bytes, 24 as a base, aligned to 8",
            "Value: base Root virtual",
            "Value: at 8 number_, int",
            "Value: at 16 held_.text, char*",
            "Value: at 16 held_.number, long int",
        ])

    def test_has_the_tables(self) -> None:
        lines = self.read().vtables
        self.assertEqual([line for line in lines if line.startswith(("Root", "Value"))], [
            "Root: 3 slots",
            "Root, below the slots: 0",
            "Root, slot 0: empty",
            "Root, slot 1: empty",
            "Root, slot 2: Root::Get() const -> int, pure",
            "Value: 5 slots, 3 of them those of Root",
            "Value, below the slots: 0 0 0 0",
            "Value, slot 0: Value::~Value(), complete",
            "Value, slot 1: Value::~Value(), deleting",
            "Value, slot 2: Value::Get() const -> int",
            "Value, slot 3: Value::Set(int) -> void",
            "Value, slot 4: Value::Set(long) -> void",
        ])
        self.assertIn("Both as Other, slot 2: non-virtual thunk to Both::Own()", lines)

    def test_tells_a_function_that_is_gone(self) -> None:
        self.assertEqual(self.changed("exports", {"  void Plain();": "", "void Value::Plain() {}": ""}),
                         ["-Value::Plain() -> void"])

    def test_tells_a_function_that_is_hidden(self) -> None:
        hidden = '__attribute__((visibility("hidden"))) void Plain();'
        self.assertEqual(self.changed("exports", {"void Plain();": hidden}), ["-Value::Plain() -> void"])

    def test_tells_another_return_type(self) -> None:
        self.assertEqual(self.changed("exports", {"  void Plain();": "  long Plain();",
                                                  "void Value::Plain() {}": "long Value::Plain() { return 1; }"}),
                         ["-Value::Plain() -> void", "+Value::Plain() -> long int"])

    def test_tells_a_variable_of_another_size(self) -> None:
        self.assertEqual(self.changed("exports", {"int table[3]": "int table[4]"}),
                         ["-table: 12 bytes", "+table: 16 bytes"])

    def test_tells_a_member_that_is_new(self) -> None:
        self.assertEqual(self.changed("layouts", {"  int number_;": "  int number_; long more_;"}), [
            "-Both: 32 bytes, 32 as a base, aligned to 8", "+Both: 40 bytes, 40 as a base, aligned to 8",
            "-Both: base Other at 24", "+Both: base Other at 32",
            "-Value: 24 bytes, 24 as a base, aligned to 8", "+Value: 32 bytes, 32 as a base, aligned to 8",
            "-Value: at 16 held_.text, char*", "-Value: at 16 held_.number, long int",
            "+Value: at 16 more_, long int",
            "+Value: at 24 held_.text, char*", "+Value: at 24 held_.number, long int"])

    def test_tells_members_that_have_changed_places(self) -> None:
        self.assertEqual(self.changed("layouts", {"  int number_;": "  int more_; int number_;"}),
                         ["-Value: at 8 number_, int", "+Value: at 8 more_, int", "+Value: at 12 number_, int"])

    def test_tells_another_value_of_an_enumerator(self) -> None:
        self.assertEqual(self.changed("layouts", {"kRed, kGreen": "kRed, kGreen = 7"}),
                         ["-Colour: kGreen = 1", "+Colour: kGreen = 7"])

    def test_tells_overloads_that_have_changed_places(self) -> None:
        found = self.changed("vtables", {"  virtual void Set(int);\n  virtual void Set(long);":
                                         "  virtual void Set(long);\n  virtual void Set(int);"})
        self.assertEqual([line for line in found if "Value," in line], [
            "-Value, slot 3: Value::Set(int) -> void", "-Value, slot 4: Value::Set(long) -> void",
            "+Value, slot 3: Value::Set(long) -> void", "+Value, slot 4: Value::Set(int) -> void"])

    def test_tells_a_virtual_function_that_is_new(self) -> None:
        found = self.changed("vtables", {"virtual int Own();": "virtual int Own(); virtual void Last();",
                                         "int Other::Own() {": "void Other::Last() {} int Other::Own() {"})
        self.assertIn("-Other: 3 slots", found)
        self.assertIn("+Other, slot 3: Other::Last() -> void", found)

    def test_is_silent_about_what_programs_do_not_see(self) -> None:
        self.assertEqual(self.read(), self.read({"{ return 1; }": "{ return 3; }", "enum Secret { kSecret }":
                                                 "enum Secret { kOther, kSecret }"}))


class TestRecord(Scratch):
    def compare(self, interface: Interface) -> tuple[int, str]:
        with contextlib.redirect_stdout(io.StringIO()) as out:
            return record.compare(self.folder, interface), out.getvalue()

    def test_what_is_accepted_is_no_difference(self) -> None:
        interface = Interface(["SONAME libsmall.so.0", "f()"], ["A: 4 bytes"], ["A: 2 slots"])
        self.assertEqual(self.compare(interface)[0], 1)
        record.write_record(self.folder, interface)
        self.assertEqual(self.compare(interface), (0, ""))

    def test_a_difference_is_shown_with_what_it_means(self) -> None:
        record.write_record(self.folder, Interface(["SONAME libsmall.so.0", "f()"], [], []))
        status, text = self.compare(Interface(["SONAME libsmall.so.0", "g()"], [], []))
        self.assertEqual(status, 1)
        self.assertIn("\n-f()\n+g()\n", text)
        self.assertIn("new SONAME major", text)
        self.assertIn("./run abi --accept", text)


@unittest.skipUnless(shutil.which("git"), "no git here")
class TestRelease(Scratch):
    EXPORTS = ["SONAME libsmall.so.1", "f()", "g()"]

    def setUp(self) -> None:
        super().setUp()
        self.tree = self.folder / "tree"
        self.write(self.EXPORTS)
        self.git("init", "--quiet", "--initial-branch=main")
        self.commit()

    def git(self, *arguments: str) -> None:
        subprocess.run(["git", "-c", "user.name=Nobody", "-c", "user.email=nobody@example.com", *arguments],
                       cwd=self.tree, check=True, stdout=subprocess.DEVNULL)

    def write(self, exports: list[str]) -> None:
        folder = self.tree / release.RECORDED
        folder.mkdir(parents=True, exist_ok=True)
        record.write_record(folder, Interface(exports, ["A: 4 bytes"], []))

    def commit(self) -> None:
        self.git("add", "--all")
        self.git("commit", "--quiet", "--allow-empty", "--message=work")

    def check(self, tree: Path | None = None) -> tuple[int, str]:
        result = subprocess.run([Path(release.__file__), tree or self.tree], stdout=subprocess.PIPE, text=True)
        return result.returncode, result.stdout

    def test_nothing_binds_before_the_first(self) -> None:
        self.write(self.EXPORTS[:-1])
        self.assertEqual(self.check(), (0, "There is no release yet, so nothing binds.\n"))

    def test_it_binds_as_soon_as_it_is_there(self) -> None:
        self.git("tag", "v1.0.0")
        self.assertEqual(self.check(), (0, "The record has all of v1.0.0.\n"))
        self.write(self.EXPORTS[:-1])
        self.commit()
        status, text = self.check()
        self.assertEqual(status, 1)
        self.assertIn("\n-g()\n", text)
        self.assertIn("1 lines of v1.0.0 are gone or have changed", text)

    def test_what_is_new_is_free(self) -> None:
        self.git("tag", "v1.0.0")
        self.write([*self.EXPORTS, "h()"])
        self.assertEqual(self.check()[0], 0)

    def test_a_higher_major_frees(self) -> None:
        self.git("tag", "v1.0.0")
        self.write(["SONAME libsmall.so.2", "f()"])
        self.assertEqual(self.check(),
                         (0, "2 lines of v1.0.0 are not there, and the SONAME says so: 1 has become 2.\n"))

    def test_a_lower_major_does_not(self) -> None:
        self.git("tag", "v1.0.0")
        self.write(["SONAME libsmall.so.0", "f()", "g()"])
        self.assertEqual(self.check()[0], 1)

    def test_a_part_of_the_record_that_is_gone_breaks(self) -> None:
        self.git("tag", "v1.0.0")
        (self.tree / release.RECORDED / "layouts.txt").unlink()
        self.assertEqual(self.check()[0], 1)

    def test_the_last_one_binds(self) -> None:
        self.git("tag", "v1.9.0")
        self.write(["SONAME libsmall.so.2", "f()"])
        self.commit()
        self.git("tag", "v1.10.0")
        self.assertEqual(self.check(), (0, "The record has all of v1.10.0.\n"))

    def test_a_candidate_and_other_tags_do_not_bind(self) -> None:
        for tag in ("v1.0.0-rc1", "v0.9.0", "very-good", "1.0"):
            self.git("tag", tag)
        self.write(self.EXPORTS[:-1])
        self.assertEqual(self.check()[0], 0)

    def test_one_of_another_branch_does_not_bind(self) -> None:
        self.git("checkout", "--quiet", "-b", "elsewhere")
        self.commit()
        self.git("tag", "v1.0.0")
        self.git("checkout", "--quiet", "main")
        self.write(self.EXPORTS[:-1])
        self.assertEqual(self.check()[0], 0)

    def test_a_source_package_says_that_it_cannot_compare(self) -> None:
        shutil.rmtree(self.tree / ".git")
        status, text = self.check()
        self.assertEqual(status, 77)
        self.assertIn("NOT COMPARED", text)

    def test_the_end_of_a_history_says_that_it_cannot_compare(self) -> None:
        self.commit()
        self.git("clone", "--quiet", "--depth=1", f"file://{self.tree.resolve()}", "../shallow")
        status, text = self.check(self.folder / "shallow")
        self.assertEqual(status, 77)
        self.assertIn("git fetch --unshallow", text)

    def test_before_1_0_nothing_has_to_be_compared(self) -> None:
        shutil.rmtree(self.tree / ".git")
        self.write([self.EXPORTS[0].replace(".so.1", ".so.0"), *self.EXPORTS[1:]])
        status, text = self.check()
        self.assertEqual(status, 0)
        self.assertIn("NOT COMPARED", text)

    def test_a_release_without_record_says_that_it_cannot_compare(self) -> None:
        self.git("rm", "-r", "--quiet", release.RECORDED)
        self.commit()
        self.git("tag", "v1.0.0")
        self.write(self.EXPORTS)
        self.assertEqual(self.check()[0], 77)


class TestSlots(unittest.TestCase):
    SOURCE = """
INSTANTIATE_TEST_SUITE_P(A, SlotOrder, testing::Values(SlotRow{"f", Slot(&A::f), 2}, SlotRow{"g", Slot(&A::g), 3},
                                                       SlotRow{"end", SlotCount<A>(), 4}));
"""
    VTABLES = "A: 4 slots\nA, slot 2: A::f() -> void\n"
    EXPORTS = "vtable for A\n"

    def test_all_is_well(self) -> None:
        self.assertEqual(check_slots.problems(self.SOURCE, self.VTABLES, self.EXPORTS), [])

    def test_tells_a_class_that_is_left_out(self) -> None:
        found = check_slots.problems(self.SOURCE, self.VTABLES + "B: 4 slots, 4 of them those of A\n",
                                     self.EXPORTS + "vtable for B\n")
        self.assertEqual(found, ["slot_order_test.cpp leaves out B"])

    def test_tells_a_slot_that_is_left_out(self) -> None:
        source = self.SOURCE.replace('SlotRow{"f", Slot(&A::f), 2}, ', "")
        found = check_slots.problems(source, self.VTABLES, self.EXPORTS)
        self.assertEqual(found, ["slot_order_test.cpp leaves out slot 2 of A"])

    def test_tells_another_number_of_slots(self) -> None:
        found = check_slots.problems(self.SOURCE, self.VTABLES.replace("4", "3"), self.EXPORTS)
        self.assertEqual(found, ["slot_order_test.cpp has 4 slots of A, the record 3"])

    def test_tells_a_table_that_does_not_leave_the_library(self) -> None:
        found = check_slots.problems(self.SOURCE, self.VTABLES, "")
        self.assertEqual(found, ["the table of A does not leave the library"])


if __name__ == "__main__":
    # Git as it is, not as somebody has set it up.
    os.environ.update(GIT_CONFIG_GLOBAL=os.devnull, GIT_CONFIG_NOSYSTEM="1")
    unittest.main(argv=sys.argv[:1])
