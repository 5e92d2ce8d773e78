#!/usr/bin/env python3
"""The Mac sources, as far as they can be judged without a Mac. `test_sources.py Types` runs one class of checks."""

import pathlib
import plistlib
import re
import shlex
import struct
import subprocess
import tempfile
import textwrap
import unittest

import blocks
import compiler
import linking
import seam

ROOT = compiler.ROOT


def complaints(found):
    return "\n".join(f"{name}:\n{text}" for name, text in found.items())


class Types(unittest.TestCase):
    def test_every_source_is_checked(self):
        self.assertGreater(len(compiler.mac_sources()), 30)

    def test_sources_type_check_under_arc(self):
        found = compiler.diagnose_all(compiler.mac_sources(), compiler.linux_target(), compiler.CHECK)
        self.assertEqual(complaints(found), "")


class Availability(unittest.TestCase):
    def test_sources_use_nothing_newer_than_the_oldest_system(self):
        found = compiler.diagnose_all(compiler.mac_sources(), compiler.apple_target(), compiler.CHECK)
        self.assertEqual(complaints(found), "")

    def test_sources_type_check_where_a_bool_is_no_character(self):
        target = compiler.apple_target() + compiler.BOOL_IS_BOOL
        found = compiler.diagnose_all(compiler.mac_sources(), target, compiler.CHECK)
        self.assertEqual(complaints(found), "")

    def test_deployment_target_is_that_of_the_build(self):
        build = (ROOT / "CMakeLists.txt").read_text()
        self.assertIn(f"CMAKE_OSX_DEPLOYMENT_TARGET {compiler.DEPLOYMENT_TARGET} ", build)


class Core(unittest.TestCase):
    def test_every_source_that_the_mac_builds_is_checked(self):
        names = {path.relative_to(ROOT / "src").as_posix() for path in compiler.core_sources()}
        self.assertGreater(len(names), 50)
        for name in ("disk/FileRemoval.cpp", "base/macos/FolderPath.cpp", "disk/posix/ItemFacts.cpp",
                     "privacy/shell/macos/Inheritance.cpp"):
            self.assertIn(name, names)

    def test_core_builds_with_the_libraries_of_the_mac(self):
        """With the C++ library of the Mac and without anything that only Linux has."""
        with tempfile.TemporaryDirectory() as folder:
            target = compiler.apple_target() + linking.generated_headers(pathlib.Path(folder))
            found = compiler.diagnose_all(compiler.core_sources(), target, compiler.CHECK)
        self.assertEqual(complaints(found), "")


class SystemHeaders(unittest.TestCase):
    def test_core_includes_only_what_the_mac_has(self):
        for source in compiler.portable_sources() + compiler.core_headers():
            with self.subTest(source=source.relative_to(ROOT)):
                self.assertEqual(compiler.strange_headers(source), set())

    def test_core_opens_nothing_below_proc_or_sys(self):
        for source in compiler.core_sources() + compiler.core_headers():
            with self.subTest(source=source.relative_to(ROOT)):
                self.assertIsNone(re.search(r'"/(?:proc|sys)\b', source.read_text()))


class Analyser(unittest.TestCase):
    def test_static_analyser_finds_nothing(self):
        found = compiler.diagnose_all(compiler.mac_sources(), compiler.apple_target(), compiler.ANALYSE)
        self.assertEqual(complaints(found), "")


class Blocks(unittest.TestCase):
    def test_no_block_keeps_its_owner_alive(self):
        seen = 0
        for source in compiler.mac_sources():
            text = source.read_text()
            seen += len(list(blocks.blocks(blocks.without_comments_and_texts(text))))
            self.assertEqual(blocks.findings(text), [], source.name)
        self.assertGreaterEqual(seen, 10)


class Seam(unittest.TestCase):
    def test_both_platforms_implement_every_operation_of_every_interface(self):
        interfaces = seam.interfaces()
        self.assertGreater(len(interfaces), 20)
        linux = seam.implementations("linux", "plist", "icu")
        mac = seam.implementations("macos")
        for name, operations in interfaces.items():
            with self.subTest(interface=name):
                self.assertLessEqual(operations, mac.get(name, set()), "missing on the Mac")
                self.assertLessEqual(operations, linux.get(name, set()), "missing on Linux")

    def test_every_operation_has_its_row_in_the_table(self):
        table = (ROOT / "docs/macos.md").read_text()
        for name, operations in seam.interfaces().items():
            for operation in operations:
                row = f"| `{name}::{operation.split('/')[0]}` |"
                with self.subTest(row=row):
                    self.assertTrue(row in table)


def plist(name):
    text = (ROOT / "packaging/macos" / name).read_text()
    text = text.replace("@CMAKE_OSX_DEPLOYMENT_TARGET@", compiler.DEPLOYMENT_TARGET)
    return plistlib.loads(text.replace("@PROJECT_VERSION@", "1.0.0").encode())


def constant(path, name):
    """The text of a constant of the sources."""
    match = re.search(name + r'\b[^;"]*"([^"]*)"', (ROOT / path).read_text())
    return match and match.group(1)


class Bundle(unittest.TestCase):
    def test_program_is_a_menu_bar_agent_under_its_identifier(self):
        information = plist("Info.plist.in")
        self.assertEqual(information["CFBundleIdentifier"],
                         constant("src/platform/linux/LinuxApplication.h", "kApplicationIdentifier"))
        self.assertEqual(information["CFBundleName"],
                         constant("src/platform/linux/LinuxApplication.h", "kApplicationName"))
        self.assertEqual(information["CFBundleIdentifier"],
                         constant("src/platform/macos/launcher/main.mm", "kProgramIdentifier"))
        self.assertIs(information["LSUIElement"], True)
        self.assertEqual(information["LSMinimumSystemVersion"], compiler.DEPLOYMENT_TARGET)
        self.assertEqual(information["NSPrincipalClass"], "NSApplication")

    def test_questions_for_the_users_folders_say_what_for(self):
        information = plist("Info.plist.in")
        for folder in ("DesktopFolder", "DocumentsFolder", "DownloadsFolder", "RemovableVolumes", "NetworkVolumes"):
            self.assertTrue(information[f"NS{folder}UsageDescription"].endswith("."))

    def test_helper_answers_to_the_identifier_and_the_notification_of_the_core(self):
        core = "".join(path.read_text() for path in (ROOT / "src/app").iterdir() if path.suffix in (".cpp", ".h"))
        self.assertIn(f'"{plist("Launcher-Info.plist.in")["CFBundleIdentifier"]}"', core)
        self.assertIn(f'"{constant("src/platform/macos/launcher/main.mm", "kKillLauncher")}"', core)
        self.assertIs(plist("Launcher-Info.plist.in")["LSBackgroundOnly"], True)

    def test_sandbox_allows_picked_folders_and_their_bookmarks_and_nothing_else(self):
        self.assertEqual(plist("HarborTray.entitlements"), {
            "com.apple.security.app-sandbox": True,
            "com.apple.security.files.bookmarks.app-scope": True,
            "com.apple.security.files.user-selected.read-write": True,
        })
        self.assertEqual(plist("LauncherApplication.entitlements"), {"com.apple.security.app-sandbox": True})
        bookmarks = (ROOT / "src/platform/macos/MacFolderBookmarks.mm").read_text()
        self.assertIn("NSURLBookmarkCreationWithSecurityScope", bookmarks)
        self.assertIn("NSURLBookmarkResolutionWithSecurityScope", bookmarks)

    def test_bundle_brings_the_image_that_the_core_names(self):
        core = (ROOT / "src/app/AppDelegate.cpp").read_text()
        self.assertIn('"StatusBarButtonImage"', core)
        self.assertTrue((ROOT / "packaging/macos/StatusBarButtonImage.png").exists())
        self.assertTrue((ROOT / "packaging/macos/StatusBarButtonImage@2x.png").exists())
        self.assertTrue((ROOT / f'packaging/macos/{plist("Info.plist.in")["CFBundleIconFile"]}.icns').exists())


    def test_images_have_the_sizes_that_the_system_asks_for(self):
        def size_and_channels(data):
            self.assertEqual(data[:8], b"\x89PNG\r\n\x1a\n")
            return struct.unpack(">IIxB", data[16:26])

        with_alpha = 6
        folder = ROOT / "packaging/macos"
        self.assertEqual(size_and_channels((folder / "StatusBarButtonImage.png").read_bytes()), (18, 18, with_alpha))
        self.assertEqual(size_and_channels((folder / "StatusBarButtonImage@2x.png").read_bytes()), (36, 36, with_alpha))
        family = (folder / "HarborTray.icns").read_bytes()
        self.assertEqual(struct.unpack(">4sI", family[:8]), (b"icns", len(family)))
        sizes = {}
        place = 8
        while place < len(family):
            kind, length = struct.unpack(">4sI", family[place:place + 8])
            sizes[kind] = size_and_channels(family[place + 8:place + length])
            place += length
        self.assertEqual(sizes, {kind: (side, side, with_alpha) for kind, side in (
            (b"ic07", 128), (b"ic08", 256), (b"ic09", 512), (b"ic10", 1024))})


class Signing(unittest.TestCase):
    SCRIPT = ROOT / "packaging/macos/sign-and-notarise"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.bundle = self.folder / "Harbor Tray.app"
        self.helper = self.bundle / "Contents/Library/LoginItems/LauncherApplication.app"
        for bundle in (self.helper, self.bundle):
            (bundle / "Contents").mkdir(parents=True, exist_ok=True)
            (bundle / "Contents/Info.plist").touch()

    def run_script(self, *arguments, identity="A Certificate", tools=None, **more):
        environment = {"PATH": f"{tools}:/usr/bin:/bin" if tools else "/usr/bin:/bin", "NOTARY_PROFILE": "a-profile"}
        if identity:
            environment["SIGNING_IDENTITY"] = identity
        environment.update(more)
        return subprocess.run([str(self.SCRIPT), *arguments], capture_output=True, text=True, env=environment)

    def check_architectures(self, commands):
        self.assertEqual([pathlib.Path(command[1]) for command in commands], [
            self.bundle / "Contents/MacOS/Harbor Tray", self.helper / "Contents/MacOS/LauncherApplication"])
        for command in commands:
            self.assertEqual([command[0], *command[2:]], ["lipo", "-verify_arch", "arm64", "x86_64"])

    def check(self, commands):
        self.check_architectures(commands[:2])
        commands = commands[2:]
        self.assertEqual([command[:2] for command in commands], [
            ["codesign", "--force"], ["codesign", "--force"], ["codesign", "--verify"], ["ditto", "-c"],
            ["xcrun", "notarytool"], ["xcrun", "stapler"], ["spctl", "--assess"]])
        # The helper first, each with its own entitlements and for the hardened run time.
        for command, bundle in zip(commands, (self.helper, self.bundle)):
            self.assertEqual(command[-1], str(bundle))
            self.assertEqual(command[command.index("--sign") + 1], "A Certificate")
            self.assertEqual(command[command.index("--options") + 1], "runtime")
        entitlements = [pathlib.Path(command[command.index("--entitlements") + 1]) for command in commands[:2]]
        self.assertEqual([path.name for path in entitlements],
                         ["LauncherApplication.entitlements", "HarborTray.entitlements"])
        self.assertTrue(all(path.exists() for path in entitlements))
        self.assertEqual(commands[3][-1], commands[4][3])
        self.assertEqual(commands[4][commands[4].index("--keychain-profile") + 1], "a-profile")
        self.assertIn("--wait", commands[4])

    def test_dry_run_prints_every_command_and_runs_none(self):
        answer = self.run_script("--dry-run", str(self.bundle))
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        self.check([shlex.split(line) for line in answer.stdout.splitlines()])

    def stand_in(self, failing=None):
        """Programs in the place of the Mac's that only note how they are called."""
        tools = self.folder / "tools"
        tools.mkdir()
        for name in ("codesign", "ditto", "xcrun", "spctl", "lipo", "productbuild"):
            script = tools / name
            script.write_text(f"""#!/bin/sh
printf '%s\\n' {name} "$@" END >> "{self.folder}/calls"
case " $* " in *" {failing} "*) exit 1 ;; esac
""")
            script.chmod(0o755)
        return tools

    def calls(self):
        text = (self.folder / "calls").read_text()
        return [call.splitlines() for call in text.replace("END\n", "\0").split("\0")[:-1]]

    def test_commands_are_run_as_the_dry_run_prints_them(self):
        answer = self.run_script(str(self.bundle), tools=self.stand_in())
        self.assertEqual((answer.returncode, answer.stdout), (0, ""), answer.stderr)
        self.check(self.calls())

    def test_nothing_follows_a_command_that_fails(self):
        self.assertNotEqual(self.run_script(str(self.bundle), tools=self.stand_in("--verify")).returncode, 0)
        self.assertEqual(self.calls()[-1][:2], ["codesign", "--verify"])

    def test_what_runs_on_one_kind_of_mac_only_is_not_signed(self):
        self.assertNotEqual(self.run_script(str(self.bundle), tools=self.stand_in("-verify_arch")).returncode, 0)
        self.assertEqual([call[0] for call in self.calls()], ["lipo"])

    def test_signing_alone_needs_no_certificate_and_asks_no_service(self):
        answer = self.run_script("--sign-only", "--dry-run", str(self.bundle), identity=None, NOTARY_PROFILE="")
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        commands = [shlex.split(line) for line in answer.stdout.splitlines()]
        self.assertEqual([command[:2] for command in commands],
                         [["codesign", "--force"], ["codesign", "--force"], ["codesign", "--verify"]])
        for command, bundle in zip(commands, (self.helper, self.bundle)):
            self.assertEqual(command[command.index("--sign") + 1], "-")
            self.assertIn("--timestamp=none", command)
            self.assertTrue(pathlib.Path(command[command.index("--entitlements") + 1]).exists())
            self.assertEqual(command[-1], str(bundle))

    def test_package_for_the_store_has_its_profile_in_the_signature_and_is_not_notarised(self):
        profile = self.folder / "a.provisionprofile"
        profile.touch()
        settings = {"INSTALLER_IDENTITY": "An Installer", "PROVISIONING_PROFILE": str(profile)}
        answer = self.run_script("--store", "--dry-run", str(self.bundle), **settings)
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        commands = [shlex.split(line) for line in answer.stdout.splitlines()]
        self.check_architectures(commands[:2])
        self.assertEqual(commands[2], ["cp", str(profile), str(self.bundle / "Contents/embedded.provisionprofile")])
        self.assertEqual([command[:2] for command in commands[3:6]],
                         [["codesign", "--force"], ["codesign", "--force"], ["codesign", "--verify"]])
        self.assertEqual(commands[6:], [["productbuild", "--component", str(self.bundle), "/Applications", "--sign",
                                         "An Installer", str(self.folder / "Harbor Tray.pkg")]])
        for missing in settings:
            rest = {name: value for name, value in settings.items() if name != missing}
            self.assertNotEqual(self.run_script("--store", "--dry-run", str(self.bundle), **rest).returncode, 0)

    def test_without_a_certificate_or_the_helper_nothing_is_signed(self):
        self.assertNotEqual(self.run_script("--dry-run", str(self.bundle), identity=None).returncode, 0)
        (self.helper / "Contents/Info.plist").unlink()
        answer = self.run_script("--dry-run", str(self.bundle))
        self.assertNotEqual(answer.returncode, 0)
        self.assertEqual(answer.stdout, "")


class Configure(unittest.TestCase):
    def configure(self, *options):
        """The build's commands as CMake writes them; nothing is compiled."""
        with tempfile.TemporaryDirectory() as folder:
            command = ["cmake", "-S", str(ROOT), "-B", folder, "-G", "Ninja", *options]
            answer = subprocess.run(command, capture_output=True, text=True)
            self.assertEqual(answer.returncode, 0, answer.stderr)
            return (pathlib.Path(folder) / "build.ninja").read_text()

    def test_mac_build_makes_the_bundle_with_its_helper(self):
        build = self.configure(
            "-DCMAKE_SYSTEM_NAME=Darwin", "-DCMAKE_SYSTEM_PROCESSOR=x86_64", "-DCMAKE_OSX_SYSROOT=/",
            f"-DCMAKE_OSX_DEPLOYMENT_TARGET={compiler.DEPLOYMENT_TARGET}", "-DCMAKE_INSTALL_NAME_TOOL=true",
            f"-DCMAKE_CXX_COMPILER={compiler.CLANG}", f"-DCMAKE_OBJCXX_COMPILER={compiler.CLANG}",
            "-DCMAKE_CXX_COMPILER_WORKS=1", "-DCMAKE_OBJCXX_COMPILER_WORKS=1")
        # The helper is copied by a step of its own, which comes with every build and after both programs.
        bundle = re.search(r"^build [^\n]*/HarborTrayBundle: CUSTOM_COMMAND \|\| ([^\n]*)\n  COMMAND = ([^\n]*)", build, re.M)
        self.assertIsNotNone(bundle)
        for program in ("Harbor Tray.app/Contents/MacOS/Harbor Tray", "LauncherApplication.app/Contents/MacOS/Launcher"):
            self.assertIn(program, bundle.group(1).replace("$ ", " "))
        self.assertIn("Contents/Library/LoginItems/LauncherApplication.app", bundle.group(2))
        self.assertRegex(build, r"\nbuild src/platform/macos/all: phony [^\n]*/HarborTrayBundle\n")
        for source in compiler.mac_sources():
            self.assertIn(str(source.relative_to(ROOT)), build)
        for source in compiler.core_sources():
            self.assertIn(str(source.relative_to(ROOT)), build)
        self.assertIsNone(re.search(r"src/[\w/]*\b(?:linux|memory|plist|icu)/\w+\.cpp", build))

    def test_linux_build_sees_nothing_of_the_mac(self):
        build = self.configure("-DHARBOR_TESTS=OFF")
        self.assertIn("src/platform/linux/", build)
        self.assertIsNone(re.search(r"src/[\w/]*\bmacos/", build))
        self.assertNotIn("packaging/macos", build)


class Link(unittest.TestCase):
    """The program and its helper, as a bundle of Mach-O files that refer to nothing that is not there."""

    @classmethod
    def setUpClass(cls):
        folder = linking.folder_of_results()
        if not folder:
            temporary = tempfile.TemporaryDirectory()
            cls.addClassCleanup(temporary.cleanup)
            folder = pathlib.Path(temporary.name)
        cls.folder = folder
        cls.stubs = folder / "system"
        linking.make_stubs(cls.stubs)

    def link_sources(self, sources, program, frameworks):
        more = linking.generated_headers(self.folder / "generated")
        objects, complaint = linking.compile_objects(sources, self.folder / "objects", more)
        self.assertEqual(complaint, "")
        return linking.link(objects, self.stubs, program, frameworks)

    def test_program_and_helper_link(self):
        bundle = self.folder / "Harbor Tray.app"
        helper = bundle / "Contents/Library/LoginItems/LauncherApplication.app"
        for place, template, sources, frameworks in (
                (bundle, "Info.plist.in", linking.program_sources(), linking.linked_frameworks()),
                (helper, "Launcher-Info.plist.in", linking.launcher_sources(), ["AppKit", "Foundation"])):
            with self.subTest(bundle=place.name):
                information = linking.write_information(place, template)
                program = place / "Contents/MacOS" / information["CFBundleExecutable"]
                self.assertEqual(self.link_sources(sources, program, frameworks), "")
                headers = linking.headers_of(program)
                self.assertRegex(headers, r"MH_MAGIC_64 +X86_64 +ALL +LIB64 +EXECUTE")
                self.assertRegex(headers, r"minos " + re.escape(compiler.DEPLOYMENT_TARGET))
                libraries = set(re.findall(r"^ *name /System/Library/Frameworks/(\w+)\.framework", headers, re.M))
                self.assertLessEqual(set(frameworks) - {"Foundation"}, libraries)

    def link_bad(self, name, frameworks):
        return self.link_sources([compiler.BAD / name], self.folder / "bad" / name, frameworks)

    def test_framework_that_is_not_linked_fails(self):
        self.assertEqual(self.link_bad("GoodProgram.mm", ["Foundation", "StoreKit"]), "")
        self.assertIn("undefined symbol: _OBJC_CLASS_$_SKStoreReviewController", self.link_bad("GoodProgram.mm", ["Foundation"]))

    def test_class_that_nobody_implements_fails(self):
        self.assertIn("undefined symbol: _OBJC_CLASS_$_HarborForgottenClass",
                      self.link_bad("UnimplementedClass.mm", ["Foundation"]))

    def test_function_that_nobody_defines_fails(self):
        self.assertIn("undefined symbol: __ZN6harbor9forgottenEi", self.link_bad("UndefinedFunction.cpp", []))

    def test_what_no_declaration_has_is_in_no_stub(self):
        functions, classes = linking.declared(textwrap.dedent("""
            // HARBOR_EXPORT int commented(void);
            HARBOR_EXPORT CFTypeID CFGetTypeID(CFTypeRef object) __attribute__((cf_returns_retained)) HARBOR_SINCE(10.6);
            HARBOR_EXPORT NSString* const NSKey HARBOR_SINCE(10.5);
            typedef int NSNumbering;
            @interface NSThing<Kind> : NSObject
            @end
            @interface NSOther (Category)
            @end"""))
        self.assertEqual(functions, {"_CFGetTypeID", "_NSKey"})
        self.assertEqual(classes, {"NSThing"})


class BadSources(unittest.TestCase):
    """Each check fails where it should: every file of bad/ has one fault."""

    def diagnose(self, name, target, mode=compiler.CHECK):
        return compiler.diagnose(compiler.BAD / name, target, mode)

    def test_frame_of_the_bad_sources_is_good(self):
        for target in (compiler.linux_target(), compiler.apple_target()):
            self.assertEqual(self.diagnose("Good.mm", target), "")
        self.assertEqual(self.diagnose("Good.mm", compiler.apple_target(), compiler.ANALYSE), "")
        self.assertEqual(blocks.findings((compiler.BAD / "Good.mm").read_text()), [])

    def test_misspelled_selector_fails(self):
        for target in (compiler.linux_target(), compiler.apple_target()):
            self.assertIn("orderFrontRegardles", self.diagnose("MisspelledSelector.mm", target))

    def test_misspelled_selector_expression_fails(self):
        for target in (compiler.linux_target(), compiler.apple_target()):
            self.assertIn("undeclared selector", self.diagnose("UndeclaredSelector.mm", target))

    def test_constant_of_another_type_fails(self):
        for target in (compiler.linux_target(), compiler.apple_target()):
            self.assertIn("NSWindowOrderingMode", self.diagnose("WrongConstant.mm", target))
            self.assertIn("incompatible pointer types", self.diagnose("WrongObject.mm", target))

    def test_newer_call_fails_only_where_it_is_unguarded(self):
        self.assertIn("only available on macOS 13.0", self.diagnose("NewerCall.mm", compiler.apple_target()))
        self.assertEqual(self.diagnose("GuardedNewerCall.mm", compiler.apple_target()), "")

    def test_absent_value_where_one_is_needed_fails(self):
        self.assertIn("nullable", self.diagnose("AbsentValue.mm", compiler.apple_target()))

    def test_header_that_is_not_imported_fails(self):
        for target in (compiler.linux_target(), compiler.apple_target()):
            self.assertIn("CALayer", self.diagnose("MissingImport.mm", target))

    def test_call_that_a_newer_system_lacks_fails_once_that_is_the_oldest_one(self):
        self.assertEqual(self.diagnose("ObsoleteCall.mm", compiler.apple_target()), "")
        self.assertIn("unavailable: obsoleted in macOS 15", self.diagnose("ObsoleteCall.mm", compiler.apple_target("15.0")))

    def test_bool_that_is_taken_for_a_character_fails(self):
        target = compiler.apple_target()
        self.assertEqual(self.diagnose("BoolOfCharacters.mm", target), "")
        self.assertIn("'signed char *'", self.diagnose("BoolOfCharacters.mm", target + compiler.BOOL_IS_BOOL))

    def test_integers_that_are_the_same_on_linux_only_fail(self):
        self.assertEqual(self.diagnose("MixedWidths.cpp", compiler.linux_target()), "")
        self.assertIn("no matching function", self.diagnose("MixedWidths.cpp", compiler.apple_target()))

    def test_leak_is_found_by_the_analyser(self):
        self.assertIn("leak", self.diagnose("Leak.mm", compiler.apple_target(), compiler.ANALYSE))

    def test_block_that_keeps_its_object_fails(self):
        # In the first two a timer, a monitor, a queue and an observer.
        for name, word, count in (("StrongSelf.mm", "self", 5), ("StrongMember.mm", "_count", 4),
                                  ("StrongName.mm", "owner", 1), ("StrongThis.mm", "this", 1),
                                  ("StrongDataMember.mm", "count_", 1), ("StrongLambda.mm", "this", 1)):
            with self.subTest(source=name):
                found = blocks.findings((compiler.BAD / name).read_text())
                self.assertEqual(len(found), count, found)
                for finding in found:
                    self.assertTrue(finding.endswith(" " + word), finding)

    def test_block_that_keeps_its_object_has_no_other_fault(self):
        for name in ("StrongSelf.mm", "StrongName.mm", "StrongThis.mm", "StrongDataMember.mm", "StrongLambda.mm"):
            with self.subTest(source=name):
                self.assertEqual(self.diagnose(name, compiler.apple_target()), "")

    def test_instance_variable_in_each_block_is_found_by_the_compiler_too(self):
        found = self.diagnose("StrongMember.mm", compiler.apple_target())
        self.assertEqual(found.count("block implicitly retains 'self'"), 4, found)

    def test_method_that_its_class_does_not_implement_fails(self):
        for target in (compiler.linux_target(), compiler.apple_target()):
            self.assertIn("method definition for 'act' not found", self.diagnose("UnimplementedMethod.mm", target))

    def test_method_that_a_protocol_demands_or_does_not_have_fails(self):
        for target in (compiler.linux_target(), compiler.apple_target()):
            self.assertIn("previewPanel:previewItemAtIndex:", self.diagnose("MissingMethod.mm", target))
            self.assertIn("numberOfPreviewItems:", self.diagnose("StrangeMethod.mm", target))

    def test_source_of_the_core_that_needs_linux_or_a_newer_system_fails(self):
        target = compiler.apple_target()
        self.assertEqual(self.diagnose("GoodCore.cpp", target), "")
        self.assertIn("pipe2", self.diagnose("LinuxCall.cpp", target))
        self.assertIn("to_chars", self.diagnose("NewerLibrary.cpp", target))
        self.assertEqual(compiler.strange_headers(compiler.BAD / "GoodCore.cpp"), set())
        self.assertEqual(compiler.strange_headers(compiler.BAD / "LinuxHeader.cpp"), {"sys/inotify.h"})

    def test_operation_that_is_missing_or_has_other_parameters_is_found(self):
        wanted = seam.operations_of_interfaces("""
            class Store {
             public:
              virtual ~Store() = default;
              virtual bool write(std::string_view key, const std::map<int, int>& value) = 0;  // kept
              virtual Subscription watch(std::function<void(int, int)> handler) const = 0;
              virtual void clear() = 0;
            };""")
        self.assertEqual(wanted, {"Store": {"write/2", "watch/1", "clear/0"}})
        made = seam.overridden_operations("""
            class MacStore : public Store {
             public:
              bool write(std::string_view key) override;
              // void clear() override;
              Subscription watch(std::function<void(int, int)> handler) const override { return {}; }
            };""")
        self.assertEqual(wanted["Store"] - made["Store"], {"write/2", "clear/0"})


if __name__ == "__main__":
    unittest.main()
