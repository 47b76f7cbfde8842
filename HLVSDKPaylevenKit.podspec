# The kit from its sources, as a pod of a local path.
Pod::Spec.new do |s|
  s.name = 'HLVSDKPaylevenKit'
  s.version = '1.0.0'
  s.summary = "Keeps a guest's payment cards with the Payleven in-app payment service."
  s.homepage = "file://#{__dir__}/README.md"
  s.license = { :type => 'None', :text => 'No licence is granted yet.' }
  s.author = 'The maintainers of HLVSDKPaylevenKit'
  s.source = { :http => "file://#{__dir__}" }

  s.ios.deployment_target = '13.0'
  s.osx.deployment_target = '10.15'
  s.static_framework = true
  s.requires_arc = false
  s.source_files = [
    'Values/*.cpp', 'Async/*.cpp', 'Platform/*.cpp', 'Platform/Default/*.cpp',
    'Host/**/*.cpp', 'Matching/*.cpp', 'Models/*.cpp',
    'Public/**/*.cpp', 'ObjC/{Binding,Classes,Foundation,Host}/*.mm', 'ObjC/HLVSDKPaylevenKit/*.h'
  ]
  s.public_header_files = 'ObjC/HLVSDKPaylevenKit/*.h'
  s.module_map = 'ObjC/Framework/module.modulemap'
  s.resource_bundles = { 'HLVSDKPaylevenKitPrivacy' => ['ObjC/Framework/PrivacyInfo.xcprivacy'] }
  # The other headers are found by their folders: several share a name with a public one.
  s.preserve_paths = '{Public,Models,Matching,Host,Async,Platform,Values,ObjC}/**/*.h'
  s.frameworks = 'Foundation'
  s.libraries = 'c++'
  s.pod_target_xcconfig = {
    'CLANG_CXX_LANGUAGE_STANDARD' => 'c++20',
    'HEADER_SEARCH_PATHS' => '"${PODS_TARGET_SRCROOT}" "${PODS_TARGET_SRCROOT}/ObjC"',
    'USE_HEADERMAP' => 'NO'
  }
end
