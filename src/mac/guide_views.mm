#import "mac/guide_views.h"

#import "mac/guide_preview.h"

namespace {

using Step = sodam::GuideModel::Step;
using Learn = sodam::GuideModel::Learn;

constexpr CGFloat pageInsetTop = 28;
constexpr CGFloat pageInsetSide = 32;
constexpr CGFloat pageInsetBottom = 24;
constexpr CGFloat textWidth = 456;
// The symbol and the gap before a point's text.
constexpr CGFloat pointIndent = 30;

NSTextField* titleLabel(NSString* text) {
  NSTextField* label = [NSTextField wrappingLabelWithString:text];
  label.font = [NSFont systemFontOfSize:22 weight:NSFontWeightBold];
  return label;
}

NSTextField* bodyLabel(NSString* text) {
  NSTextField* label = [NSTextField wrappingLabelWithString:text];
  label.font = [NSFont systemFontOfSize:13];
  label.textColor = NSColor.secondaryLabelColor;
  return label;
}

// A line with a small symbol before it, for the lists of the first pages.
NSView* pointLine(NSString* symbol, NSString* text) {
  NSImageView* icon = [[NSImageView alloc] initWithFrame:NSZeroRect];
  icon.image = [NSImage imageWithSystemSymbolName:symbol accessibilityDescription:nil];
  icon.contentTintColor = NSColor.controlAccentColor;
  [icon setContentHuggingPriority:NSLayoutPriorityRequired
                   forOrientation:NSLayoutConstraintOrientationHorizontal];
  NSTextField* label = [NSTextField wrappingLabelWithString:text];
  label.font = [NSFont systemFontOfSize:14];
  label.preferredMaxLayoutWidth = textWidth - pointIndent;
  NSStackView* line = [NSStackView stackViewWithViews:@[ icon, label ]];
  line.alignment = NSLayoutAttributeTop;
  line.spacing = 10;
  return line;
}

NSButton* button(NSString* title, id<SJGuideActions> target, SEL action, BOOL primary) {
  NSButton* button = [NSButton buttonWithTitle:title target:target action:action];
  if (primary) button.keyEquivalent = @"\r";
  return button;
}

}  // namespace

NSString* SJString(const std::string& text) {
  NSString* string = [[NSString alloc] initWithBytes:text.data()
                                              length:text.size()
                                            encoding:NSUTF8StringEncoding];
  return string ? string : @"";
}

@interface SJGuidePage ()
@property(nonatomic, weak, readonly) id<SJGuideActions> actions;
@property(nonatomic, readonly) NSButton* backButton;
- (instancetype)initWithTitle:(NSString*)title
                         body:(NSString*)body
                      actions:(id<SJGuideActions>)actions;
- (void)addContent:(NSView*)view;
- (void)addPreview;
- (void)addPoints:(NSArray<NSArray<NSString*>*>*)points;
- (void)setBack:(nullable NSButton*)back onward:(NSArray<NSButton*>*)onward;
@end

@implementation SJGuidePage {
  NSStackView* _content;
  NSStackView* _buttons;
}

- (instancetype)initWithTitle:(NSString*)title
                         body:(NSString*)body
                      actions:(id<SJGuideActions>)actions {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _actions = actions;
  self.wantsLayer = YES;
  _content = [NSStackView stackViewWithViews:@[]];
  _content.orientation = NSUserInterfaceLayoutOrientationVertical;
  _content.alignment = NSLayoutAttributeCenterX;
  _content.spacing = 14;
  _buttons = [NSStackView stackViewWithViews:@[]];
  _buttons.orientation = NSUserInterfaceLayoutOrientationHorizontal;
  for (NSView* view in @[ _content, _buttons ]) {
    view.translatesAutoresizingMaskIntoConstraints = NO;
    [self addSubview:view];
  }
  [NSLayoutConstraint activateConstraints:@[
    [_content.topAnchor constraintEqualToAnchor:self.topAnchor constant:pageInsetTop],
    [_content.leadingAnchor constraintEqualToAnchor:self.leadingAnchor constant:pageInsetSide],
    [_content.trailingAnchor constraintEqualToAnchor:self.trailingAnchor constant:-pageInsetSide],
    [_buttons.leadingAnchor constraintEqualToAnchor:self.leadingAnchor constant:pageInsetSide],
    [_buttons.trailingAnchor constraintEqualToAnchor:self.trailingAnchor constant:-pageInsetSide],
    [_buttons.bottomAnchor constraintEqualToAnchor:self.bottomAnchor constant:-pageInsetBottom],
  ]];
  NSTextField* heading = titleLabel(title);
  [self addText:heading];
  [_content setCustomSpacing:10 afterView:heading];
  if (body.length) [self addText:bodyLabel(body)];
  return self;
}

// Text spans the page and wraps; the stack centres everything else.
- (void)addText:(NSTextField*)label {
  label.preferredMaxLayoutWidth = textWidth;
  [self addContent:label];
  [label.widthAnchor constraintEqualToAnchor:_content.widthAnchor].active = YES;
}

- (void)addContent:(NSView*)view {
  [_content addArrangedSubview:view];
}

- (void)addPreview {
  _preview = [[SJGlassPreview alloc] initWithFrame:NSZeroRect];
  [self addContent:_preview];
}

- (void)addPoints:(NSArray<NSArray<NSString*>*>*)points {
  NSStackView* list = [NSStackView stackViewWithViews:@[]];
  list.orientation = NSUserInterfaceLayoutOrientationVertical;
  list.alignment = NSLayoutAttributeLeading;
  list.spacing = 12;
  for (NSArray<NSString*>* point in points)
    [list addArrangedSubview:pointLine(point[0], point[1])];
  [self addContent:list];
  [list.widthAnchor constraintEqualToAnchor:_content.widthAnchor].active = YES;
}

// `back` sits at the leading edge; the others at the trailing edge, the last
// one being the step's main way on.
- (void)setBack:(nullable NSButton*)back onward:(NSArray<NSButton*>*)onward {
  for (NSView* view in _buttons.views.copy)
    [_buttons removeView:view];
  if (back) [_buttons addView:back inGravity:NSStackViewGravityLeading];
  for (NSButton* button in onward)
    [_buttons addView:button inGravity:NSStackViewGravityTrailing];
}

- (NSButton*)backButton {
  return button(@"이전", self.actions, @selector(goBack:), NO);
}

- (NSView*)hitTest:(NSPoint)point {
  return self.retired ? nil : [super hitTest:point];
}

- (BOOL)performKeyEquivalent:(NSEvent*)event {
  return self.retired ? NO : [super performKeyEquivalent:event];
}

- (void)showLearn:(const Learn&)learn note:(const std::optional<std::string>&)note {
}

- (void)showProgress:(double)progress {
}

@end

// The learning itself: what shows under the preview follows the model's
// learning state.
@interface SJLearnPage : SJGuidePage
@end

@implementation SJLearnPage {
  NSStackView* _status;
  NSProgressIndicator* _progressBar;
  Learn _shownLearn;
  std::optional<std::string> _shownNote;
  BOOL _hasShown;
}

- (instancetype)initWithActions:(id<SJGuideActions>)actions {
  NSString* body = [NSString stringWithFormat:@"바르게 앉아 화면을 바라봐 주세요. %.0f초면 끝나요.",
                                              sodam::GuideModel::captureSeconds];
  if (!(self = [super initWithTitle:@"바른 자세를 배울게요" body:body actions:actions])) return nil;
  [self addPreview];
  _status = [NSStackView stackViewWithViews:@[]];
  _status.orientation = NSUserInterfaceLayoutOrientationVertical;
  _status.alignment = NSLayoutAttributeCenterX;
  _status.spacing = 6;
  [self addContent:_status];
  return self;
}

- (void)showLearn:(const Learn&)learn note:(const std::optional<std::string>&)note {
  if (_hasShown && learn == _shownLearn && note == _shownNote) return;
  _hasShown = YES;
  _shownLearn = learn;
  _shownNote = note;
  for (NSView* view in _status.arrangedSubviews.copy)
    [view removeFromSuperview];
  _progressBar = nil;
  switch (learn.state) {
    case Learn::State::idle:
      [self showReady];
      break;
    case Learn::State::countdown:
      [self showCountdown:learn.count];
      break;
    case Learn::State::capturing:
      [self showCapturing];
      break;
    case Learn::State::failed:
      [self showFailure:SJString(learn.message)];
      break;
    case Learn::State::concern:
      [self showConcerns:learn.concerns];
      break;
    case Learn::State::done:
      [self showLearned:note];
      break;
  }
}

- (void)showProgress:(double)progress {
  _progressBar.doubleValue = progress;
}

- (void)addStatusLine:(NSString*)text color:(NSColor*)color {
  NSTextField* label = [NSTextField wrappingLabelWithString:text];
  label.font = [NSFont systemFontOfSize:13];
  label.textColor = color;
  label.alignment = NSTextAlignmentCenter;
  label.preferredMaxLayoutWidth = textWidth;
  [_status addArrangedSubview:label];
}

- (void)showReady {
  [self addStatusLine:@"준비되면 시작을 눌러 주세요. 숫자를 센 뒤에 배울게요."
                color:NSColor.secondaryLabelColor];
  [self setBack:self.backButton
         onward:@[ button(@"학습 시작", self.actions, @selector(startLearning:), YES) ]];
}

- (void)showCountdown:(int)count {
  NSTextField* number = [NSTextField labelWithString:[NSString stringWithFormat:@"%d", count]];
  number.font = [NSFont monospacedDigitSystemFontOfSize:44 weight:NSFontWeightSemibold];
  [_status addArrangedSubview:number];
  [self setBack:nil onward:@[]];
}

- (void)showCapturing {
  _progressBar = [[NSProgressIndicator alloc] initWithFrame:NSZeroRect];
  _progressBar.style = NSProgressIndicatorStyleBar;
  _progressBar.indeterminate = NO;
  _progressBar.minValue = 0;
  _progressBar.maxValue = 1;
  [_status addArrangedSubview:_progressBar];
  [_progressBar.widthAnchor constraintEqualToConstant:textWidth - 96].active = YES;
  [self addStatusLine:@"그대로 편하게 있어 주세요. 잘하고 있어요!"
                color:NSColor.secondaryLabelColor];
  [self setBack:nil onward:@[]];
}

- (void)showFailure:(NSString*)message {
  [self addStatusLine:message color:NSColor.systemOrangeColor];
  [self setBack:self.backButton
         onward:@[ button(@"다시 해 볼게요", self.actions, @selector(startLearning:), YES) ]];
}

- (void)showConcerns:(const std::vector<std::string>&)concerns {
  [self addStatusLine:@"이런 점이 보였어요" color:NSColor.labelColor];
  for (const auto& concern : concerns)
    [self addStatusLine:[@"· " stringByAppendingString:SJString(concern)]
                  color:NSColor.systemOrangeColor];
  [self setBack:self.backButton
         onward:@[
           button(@"이대로 쓸게요", self.actions, @selector(acceptAnyway:), NO),
           button(@"다시 배우기", self.actions, @selector(startLearning:), YES),
         ]];
}

- (void)showLearned:(const std::optional<std::string>&)note {
  [self addStatusLine:@"잘 배웠어요! 이제 이 자세를 기준으로 살펴볼게요." color:NSColor.labelColor];
  if (note) [self addStatusLine:SJString(*note) color:NSColor.secondaryLabelColor];
  [self setBack:nil
         onward:@[
           button(@"다시 배우기", self.actions, @selector(startLearning:), NO),
           button(@"다음", self.actions, @selector(goNext:), YES),
         ]];
}

@end

namespace {

SJGuidePage* welcomePage(id<SJGuideActions> actions) {
  SJGuidePage* page = [[SJGuidePage alloc]
      initWithTitle:@"안녕하세요, 소담자리예요"
               body:@"노트북 앞에서 바르게 앉을 수 있게 곁에서 살펴 드릴게요. 먼저 편안하고 "
                    @"바른 자세를 한 번 알려 주세요. 1분이면 충분해요."
            actions:actions];
  [page addPoints:@[
    @[ @"figure.stand", @"자세가 흐트러진 채로 오래 있으면 살짝 알려 드려요." ],
    @[ @"menubar.rectangle", @"메뉴 막대에 조용히 있다가 필요할 때만 나타나요." ],
  ]];
  [page setBack:nil onward:@[ button(@"시작할게요", actions, @selector(goNext:), YES) ]];
  return page;
}

SJGuidePage* privacyPage(id<SJGuideActions> actions) {
  SJGuidePage* page =
      [[SJGuidePage alloc] initWithTitle:@"카메라는 이렇게만 써요"
                                    body:@"자세를 보려면 카메라가 필요해요. 안심하고 쓰실 수 "
                                         @"있게 약속드릴게요."
                                 actions:actions];
  [page addPoints:@[
    @[ @"lock.fill", @"사진이나 영상은 저장하지도, 어디로 보내지도 않아요." ],
    @[ @"cpu", @"화면 속 모습은 이 Mac 안에서 바로 몇 개의 숫자로만 바뀌어요." ],
    @[ @"eye.slash", @"미리보기도 흐릿하게만 보여 드려요." ],
    @[ @"video", @"카메라는 필요할 때만 잠깐 켜요." ],
  ]];
  [page setBack:page.backButton
         onward:@[ button(@"카메라 허용하기", actions, @selector(allowCamera:), YES) ]];
  return page;
}

SJGuidePage* posturePage(id<SJGuideActions> actions) {
  SJGuidePage* page =
      [[SJGuidePage alloc] initWithTitle:@"바른 자세를 떠올려 볼까요"
                                    body:@"지금 알려 주시는 자세가 앞으로의 기준이 돼요."
                                 actions:actions];
  [page addPoints:@[
    @[ @"checkmark.circle", @"엉덩이를 의자 깊숙이 넣고 등을 기대요." ],
    @[ @"checkmark.circle", @"어깨에 힘을 빼고 편하게 내려요." ],
    @[ @"checkmark.circle", @"턱을 살짝 당기고 화면을 바라봐요." ],
    @[ @"checkmark.circle", @"화면과는 팔 길이쯤 떨어져 앉아요." ],
  ]];
  [page setBack:page.backButton onward:@[ button(@"다음", actions, @selector(goNext:), YES) ]];
  return page;
}

SJGuidePage* setupPage(id<SJGuideActions> actions) {
  SJGuidePage* page =
      [[SJGuidePage alloc] initWithTitle:@"자리를 맞춰 볼까요"
                                    body:@"흐릿한 화면이 또렷해질 때까지 자리를 잡아 주세요. "
                                         @"아래 안내가 보이면 그대로 따라 하시면 돼요."
                                 actions:actions];
  [page addPreview];
  [page setBack:page.backButton onward:@[ button(@"다음", actions, @selector(goNext:), YES) ]];
  return page;
}

SJGuidePage* donePage(id<SJGuideActions> actions) {
  SJGuidePage* page = [[SJGuidePage alloc]
      initWithTitle:@"준비가 다 됐어요"
               body:@"이제 메뉴 막대에서 조용히 자세를 살펴볼게요. 오늘도 편안하게 앉아요!"
            actions:actions];
  [page addPoints:@[
    @[ @"bell", @"자세가 흐트러지면 살짝 알려 드릴게요." ],
    @[ @"arrow.clockwise", @"자리를 옮기면 메뉴에서 언제든 다시 배울 수 있어요." ],
  ]];
  [page setBack:nil onward:@[ button(@"시작하기", actions, @selector(finish:), YES) ]];
  return page;
}

}  // namespace

SJGuidePage* SJMakeGuidePage(Step step, id<SJGuideActions> actions) {
  switch (step) {
    case Step::welcome:
      return welcomePage(actions);
    case Step::privacy:
      return privacyPage(actions);
    case Step::posture:
      return posturePage(actions);
    case Step::setup:
      return setupPage(actions);
    case Step::learn:
      return [[SJLearnPage alloc] initWithActions:actions];
    case Step::done:
      return donePage(actions);
  }
  return welcomePage(actions);
}
