"""Links the Mac program without a Mac: Mach-O objects by clang, stubs of the frameworks made of the declarations, and LLVM's
linker, for which every symbol that nobody defines is an error."""

import os
import pathlib
import plistlib
import re
import shutil
import subprocess
from concurrent.futures import ThreadPoolExecutor

import compiler

ROOT = compiler.ROOT
LISTS = ROOT / "tests/macos/link"
LINKER = shutil.which("ld64.lld-14") or shutil.which("ld64.lld")
CPP_LIBRARIES = ("libc++.so.1", "libc++abi.so.1")
# What a folder of the declarations is in the system; a framework also hands on what others hold.
FRAMEWORKS = ("AppKit", "CoreFoundation", "CoreGraphics", "Foundation", "IOKit", "Quartz", "QuartzCore", "QuickLookUI",
              "Security", "ServiceManagement", "StoreKit")
HANDED_ON = {"Foundation": ("CoreFoundation",), "Quartz": ("QuickLookUI",)}


def declared(text):
    """The functions and constants, and the classes, that a header of the declarations says to be in its library."""
    text = re.sub(r"//[^\n]*|/\*.*?\*/", "", text, flags=re.S)
    symbols = set()
    for match in re.finditer(r"\bHARBOR_EXPORT\s([^;{]*);", text):
        declaration = re.sub(r"\b(?:HARBOR_SINCE\w*|__attribute__)\s*\((?:[^()]|\((?:[^()]|\([^()]*\))*\))*\)", "", match.group(1))
        name = re.search(r"(\w+)\s*\(", declaration) or re.search(r"(\w+)\s*$", declaration)
        symbols.add("_" + name.group(1))
    # A category has a name in parentheses, and makes no class.
    return symbols, set(re.findall(r"^@interface\s+(\w+)\b(?!\s*\()", text, re.M))


def listed(name):
    """The symbols of a list of this folder; none where there is no list."""
    path = LISTS / f"{name}.symbols"
    if not path.exists():
        return set()
    return {line for line in path.read_text().splitlines() if line and not line.startswith("#")}


def symbols_of_cpp_library():
    """What this machine's build of the Mac's C++ library defines, by the Mac's names."""
    folder = next(path for path in map(pathlib.Path, sorted(pathlib.Path("/usr/lib").glob("llvm-14/lib")))
                  if (path / CPP_LIBRARIES[0]).exists())
    symbols = set()
    for library in CPP_LIBRARIES:
        answer = subprocess.run(["nm", "-D", "--defined-only", "--format=posix", str(folder / library)],
                                capture_output=True, text=True, check=True)
        symbols |= {"_" + line.split()[0].split("@")[0] for line in answer.stdout.splitlines()}
    return symbols


def stub(path, install_name, symbols, classes=(), handed_on=()):
    """A library's text stub."""
    names = list(symbols) + [f"_OBJC_{kind}_$_{name}" for name in classes for kind in ("CLASS", "METACLASS")]
    lines = ["--- !tapi-tbd", "tbd-version: 4", "targets: [ x86_64-macos ]", f"install-name: '{install_name}'"]
    if handed_on:
        lines += ["reexported-libraries:", "  - targets: [ x86_64-macos ]", "    libraries:"]
        lines += [f"      - '{framework_path(name)}'" for name in handed_on]
    lines += ["exports:", "  - targets: [ x86_64-macos ]", "    symbols:"]
    lines += [f"      - '{name}'" for name in sorted(names)]
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text("\n".join(lines) + "\n...\n")


def framework_path(name):
    return f"/System/Library/Frameworks/{name}.framework/{name}"


def make_stubs(folder):
    """The libraries of the system, as a folder for the linker's -syslibroot."""
    shutil.rmtree(folder, ignore_errors=True)
    of_system = listed("libSystem")
    for header in compiler.DECLARATIONS.rglob("*.h"):
        if header.relative_to(compiler.DECLARATIONS).parts[0] not in FRAMEWORKS:
            of_system |= declared(header.read_text())[0]
    for name in FRAMEWORKS:
        symbols, classes = listed(name), set()
        for header in (compiler.DECLARATIONS / name).rglob("*.h"):
            functions, interfaces = declared(header.read_text())
            symbols |= functions
            classes |= interfaces
        stub(folder / (framework_path(name)[1:] + ".tbd"), framework_path(name), symbols, classes, HANDED_ON.get(name, ()))
    stub(folder / "usr/lib/libSystem.tbd", "/usr/lib/libSystem.B.dylib", of_system)
    stub(folder / "usr/lib/libobjc.tbd", "/usr/lib/libobjc.A.dylib", listed("libobjc"))
    stub(folder / "usr/lib/libc++.tbd", "/usr/lib/libc++.1.dylib", symbols_of_cpp_library())


def compile_object(source, folder, more=()):
    """The source as a Mach-O object; what clang has to say about it, and the object's path."""
    place = source.relative_to(ROOT)
    target = folder / ("_".join(place.parts) + ".o")
    target.parent.mkdir(parents=True, exist_ok=True)
    cache = [shutil.which("ccache")] if shutil.which("ccache") else []
    language = compiler.OBJECTIVE if source.suffix == ".mm" else []
    command = [*cache, compiler.CLANG, "-c", *compiler.apple_target(), *compiler.COMMON, *more, *language, str(source),
               "-o", str(target)]
    answer = subprocess.run(command, capture_output=True, text=True, cwd=ROOT)
    return answer.stderr if answer.returncode != 0 or answer.stderr else "", target


def compile_objects(sources, folder, more=()):
    """The objects of these sources, and every complaint about one."""
    with ThreadPoolExecutor(2) as pool:
        results = list(pool.map(lambda source: compile_object(source, folder, more), sources))
    return [target for _, target in results], "\n".join(text for text, _ in results if text)


def linked_frameworks():
    """The frameworks that the build links to the program."""
    build = (ROOT / "src/platform/macos/CMakeLists.txt").read_text()
    return sorted(set(re.findall(r"-framework (\w+)", build)))


def link(objects, stubs, program, frameworks):
    """What the linker has to say; the empty text when it is content and the program is there."""
    program.parent.mkdir(parents=True, exist_ok=True)
    program.unlink(missing_ok=True)
    system = compiler.DEPLOYMENT_TARGET
    command = [LINKER, "-arch", "x86_64", "-platform_version", "macos", system, system, "-syslibroot", str(stubs),
               "-fatal_warnings", "-ObjC", "-o", str(program), *map(str, objects), "-lSystem", "-lobjc", "-lc++"]
    for framework in frameworks:
        command += ["-framework", framework]
    answer = subprocess.run(command, capture_output=True, text=True)
    if answer.returncode == 0 and program.exists():
        return answer.stderr
    return answer.stderr or f"status {answer.returncode}"


def generated_headers(folder):
    """What the build generates, as an include folder."""
    (folder / "app").mkdir(parents=True, exist_ok=True)
    text = (ROOT / "src/app/LinkAddresses.h.in").read_text()
    (folder / "app/LinkAddresses.h").write_text(re.sub("@[^@]*@", "", text))
    return ["-I", str(folder)]


def launcher_sources():
    return [path for path in compiler.mac_sources() if "launcher" in path.parts]


def program_sources():
    return [path for path in compiler.mac_sources() if "launcher" not in path.parts] + compiler.core_sources()


def write_information(bundle, template):
    text = (ROOT / "packaging/macos" / template).read_text()
    text = text.replace("@CMAKE_OSX_DEPLOYMENT_TARGET@", compiler.DEPLOYMENT_TARGET).replace("@PROJECT_VERSION@", "1.0.0")
    (bundle / "Contents").mkdir(parents=True, exist_ok=True)
    (bundle / "Contents/Info.plist").write_text(text)
    return plistlib.loads(text.encode())


def headers_of(program):
    """The load commands of a Mach-O file, as text."""
    tool = shutil.which("llvm-objdump-14") or shutil.which("llvm-objdump")
    answer = subprocess.run([tool, "--macho", "--private-headers", str(program)], capture_output=True, text=True, check=True)
    return answer.stdout


def folder_of_results():
    """Where the bundle is built; none when the tests are to use a folder of their own."""
    given = os.environ.get("HARBOR_MAC_LINK_FOLDER")
    return pathlib.Path(given) if given else None
