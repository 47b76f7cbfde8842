"""What Xcode takes, as far as it can be checked without one: each preset configures against an empty
SDK, its framework's headers compile as a module for its platform, property lists parse, the podspec's
patterns name the sources of the build, and the oldest systems are the same everywhere.

Usage: xcode_files.py REPOSITORY CMAKE COMPILER
"""
import os
import plistlib
import re
import subprocess
import sys
import tempfile
from pathlib import Path

PLATFORMS = {"ios-device": ("iPhoneOS", "arm64-apple-ios15", "MinimumOSVersion", "13.0"),
             "ios-simulator": ("iPhoneSimulator", "x86_64-apple-ios15-simulator",
                               "MinimumOSVersion", "13.0"),
             "macos": ("MacOSX", "arm64-apple-macos13", "LSMinimumSystemVersion", "10.15")}


def run(*command):
    result = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if result.returncode:
        sys.exit(f"{' '.join(map(str, command))}\n{result.stdout}")
    return result.stdout


def check_framework(preset, repository, cmake, compiler, scratch):
    sdk_name, target, minimum_key, minimum = PLATFORMS[preset]
    sdk = scratch / f"{sdk_name}.platform/Developer/SDKs/{sdk_name}.sdk"
    sdk.mkdir(parents=True)
    build = scratch / preset
    run(cmake, "-S", repository, "--preset", preset, "-B", build, f"-DCMAKE_OSX_SYSROOT={sdk}",
        f"-DCMAKE_CXX_COMPILER={compiler}", "-DCMAKE_INSTALL_NAME_TOOL=true",
        "-DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY")
    targets = run("ninja", "-C", build, "-t", "targets", "all")
    run("ninja", "-C", build, *re.findall(r"^(.*): COPY_OSX_CONTENT$", targets, re.M))
    framework = build / "HLVSDKPaylevenKit.framework"
    if preset == "macos":
        os.symlink("Versions/A/Modules", framework / "Modules")
    found = {path.name: plistlib.loads(path.read_bytes()) for path in framework.rglob("*")
             if path.name in ("Info.plist", "PrivacyInfo.xcprivacy")}
    assert found["Info.plist"][minimum_key] == minimum, found
    assert found["Info.plist"]["CFBundleExecutable"] == framework.stem
    assert found["PrivacyInfo.xcprivacy"]["NSPrivacyTracking"] is False
    source = build / "importing.m"
    source.write_text("@import HLVSDKPaylevenKit;\nHLVSDKPayleven* kit;\n")
    run(compiler, "-target", target, "-fblocks", "-Wall", "-Werror", "-nostdinc", "-fsyntax-only",
        "-fmodules", f"-fmodules-cache-path={build}/cache", "-F", build,
        "-I", repository / "Tests/ObjC/PhoneFoundation", source)


def check_lists(repository):
    podspec = (repository / "HLVSDKPaylevenKit.podspec").read_text()
    package = (repository / "Package.swift").read_text()
    patterns = re.findall(r"'([^']+)'", re.search(r"source_files = \[(.*?)\]", podspec, re.S)[1])
    named = set()
    for pattern in patterns:
        braces = re.search(r"\{(.*?)\}", pattern)
        for choice in braces[1].split(",") if braces else [""]:
            paths = repository.glob(pattern.replace(braces[0], choice) if braces else pattern)
            named |= {str(path.relative_to(repository)) for path in paths}
    built = set()
    for listed in ("Kit", "ObjC"):
        text = (repository / f"cmake/{listed}.cmake").read_text()
        built |= set(re.findall(r"^  (\S+\.(?:cpp|mm))\b", text, re.M))
    sources = {path for path in named if not path.endswith(".h")}
    assert sources == built and len(built) > 40, sources ^ built
    # What Xcode lays into one folder.
    headers = [Path(path).name for path in named if path.endswith(".h")]
    assert len(headers) == len(set(headers)) > 10
    for key, text in (("ios", ".iOS"), ("osx", ".macOS")):
        version = re.search(rf"{key}\.deployment_target = '(.*?)'", podspec)[1]
        assert f'{text}("{version}")' in package and version in [row[3] for row in PLATFORMS.values()]
    output = re.search(r"-output (\S+)", (repository / "scripts/xcframework").read_text())[1]
    assert f'path: "{output}"' in package


def main():
    repository, cmake, compiler = Path(sys.argv[1]), *sys.argv[2:]
    check_lists(repository)
    with tempfile.TemporaryDirectory() as scratch:
        for preset in PLATFORMS:
            check_framework(preset, repository, cmake, compiler, Path(scratch))


if __name__ == "__main__":
    main()
