// The system's on-device language model for the health coach's chat, as the
// two C functions of system_model_bridge.h. Built only where the SDK has
// FoundationModels; the framework is weakly linked and asked for only on
// macOS 26 or later.
import Foundation
@_weakLinked import FoundationModels

public typealias SJModelReply = @convention(c) (UnsafeMutableRawPointer?, UnsafePointer<CChar>?) -> Void

@_cdecl("SJSystemModelAvailable")
public func systemModelAvailable() -> Bool {
  guard #available(macOS 26.0, *) else { return false }
  if case .available = SystemLanguageModel.default.availability { return true }
  return false
}

@_cdecl("SJSystemModelRespond")
public func systemModelRespond(
  _ instructions: UnsafePointer<CChar>, _ question: UnsafePointer<CChar>,
  _ context: UnsafeMutableRawPointer?, _ reply: SJModelReply
) {
  let instructionsText = String(cString: instructions)
  let questionText = String(cString: question)
  // The context is the caller's; it only travels back.
  let token = Int(bitPattern: context)
  guard #available(macOS 26.0, *) else {
    DispatchQueue.main.async { reply(UnsafeMutableRawPointer(bitPattern: token), nil) }
    return
  }
  Task { @MainActor in
    var answer: String?
    do {
      let session = LanguageModelSession(
        model: SystemLanguageModel.default, tools: [], instructions: instructionsText)
      answer = try await session.respond(to: questionText, options: GenerationOptions()).content
    } catch {
      answer = nil
    }
    let back = UnsafeMutableRawPointer(bitPattern: token)
    if let answer {
      answer.withCString { reply(back, $0) }
    } else {
      reply(back, nil)
    }
  }
}
