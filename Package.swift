// swift-tools-version:5.5
import PackageDescription

// The binary that scripts/xcframework builds.
let package = Package(
  name: "HLVSDKPaylevenKit",
  platforms: [.iOS("13.0"), .macOS("10.15")],
  products: [.library(name: "HLVSDKPaylevenKit", targets: ["HLVSDKPaylevenKit"])],
  targets: [
    .binaryTarget(name: "HLVSDKPaylevenKit", path: "build/HLVSDKPaylevenKit.xcframework")
  ]
)
