#import "mac/panel_pages.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#import "mac/mate_figure_view.h"

using namespace sodam;

namespace {

constexpr NSTimeInterval reloadDelaySeconds = 0.15;
constexpr CGFloat figureSide = 84;

NSFont* boldFont() {
  return [NSFont systemFontOfSize:NSFont.systemFontSize weight:NSFontWeightSemibold];
}

NSTextField* heading(NSString* text) {
  return panelLabel(text, boldFont(), NSColor.labelColor);
}

std::string textOf(NSTextField* edit) {
  const char* utf8 = edit.stringValue.UTF8String;
  return utf8 ? std::string(utf8) : std::string();
}

// Asks for one line of text in a sheet-less alert; nothing when cancelled.
std::optional<std::string> askLine(NSString* title, NSString* hint, NSString* placeholder) {
  NSAlert* alert = [[NSAlert alloc] init];
  alert.messageText = title;
  alert.informativeText = hint;
  NSTextField* edit = [NSTextField textFieldWithString:@""];
  edit.placeholderString = placeholder;
  edit.frame = NSMakeRect(0, 0, 240, 24);
  alert.accessoryView = edit;
  [alert addButtonWithTitle:@"확인"];
  [alert addButtonWithTitle:@"취소"];
  if ([alert runModal] != NSAlertFirstButtonReturn) return std::nullopt;
  return textOf(edit);
}

bool confirm(NSString* question, NSString* action) {
  NSAlert* alert = [[NSAlert alloc] init];
  alert.messageText = question;
  [alert addButtonWithTitle:action];
  [alert addButtonWithTitle:@"취소"];
  return [alert runModal] == NSAlertFirstButtonReturn;
}

void tell(NSString* message) {
  NSAlert* alert = [[NSAlert alloc] init];
  alert.messageText = message;
  [alert runModal];
}

// The header shared by the family: the room, the ranking and the calendar.
NSView* familyHeader(const SJPanelContext& context, PanelPage shown) {
  NSMutableArray<NSView*>* buttons = [NSMutableArray array];
  PanelModel* model = &context.model();
  for (PanelPage page : pageFamily(PanelPage::groups)) {
    NSButton* button = panelButton(SJString(std::string(pageTitle(page))), ^{
      model->go(page);
    });
    button.state = page == shown ? NSControlStateValueOn : NSControlStateValueOff;
    button.enabled = page != shown;
    [buttons addObject:button];
  }
  return panelRow(buttons, 6);
}

// One member at a desk: the figure in its look and state, the name and words.
NSView* seatView(const GroupsPage::Seat& seat) {
  SJMateFigureView* figure = [[SJMateFigureView alloc] initWithState:seat.live];
  figure.look = seat.look;
  [figure.widthAnchor constraintEqualToConstant:figureSide].active = YES;
  [figure.heightAnchor constraintEqualToConstant:figureSide].active = YES;
  NSString* name = SJString(seat.name + (seat.me ? " (나)" : ""));
  return panelColumn(
      @[
        figure, panelLabel(name, boldFont(), NSColor.labelColor),
        panelRow(
            @[
              panelSymbol(SJString(seat.symbol), NSColor.secondaryLabelColor, 12, name),
              panelCaption(SJString(seat.state))
            ],
            4),
        panelCaption(SJString(seat.numbers))
      ],
      4);
}

NSView* rankingRows(const std::vector<RankingPage::Row>& rows) {
  NSMutableArray<NSView*>* lines = [NSMutableArray array];
  for (const auto& row : rows) {
    NSString* text = SJString(std::to_string(row.rank) + ". " + row.name + "  " + row.value);
    [lines addObject:panelLabel(text, row.me ? boldFont() : [NSFont systemFontOfSize:13],
                                NSColor.labelColor)];
  }
  return panelColumn(lines, 4);
}

}  // namespace

// A page of the together family. It follows the sign-in and the groups,
// and while it is on screen it tells the groups that someone looks, so they
// refresh faster.
@interface SJTogetherPage : NSView <SJPanelPage>
@end

@implementation SJTogetherPage {
 @protected
  SJPanelContext _context;
  PanelPage _page;
  std::vector<std::pair<ChangeSignal*, ChangeSignal::Token>> _subscriptions;
  NSView* _shown;
  bool _watching;
  std::string _groupId;
  RankingPage::Period _period;
  Date _selected;
}

- (instancetype)initWithContext:(const SJPanelContext&)context page:(PanelPage)page {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _context = context;
  _page = page;
  _period = RankingPage::Period::today;
  _selected = SystemClock().now();
  if (Social* social = context.core->social()) [self follow:social->onChange];
  if (CloudAuth* auth = context.core->cloudAuth()) [self follow:auth->onChange];
  [self reload];
  return self;
}

- (void)dealloc {
  [NSObject cancelPreviousPerformRequestsWithTarget:self];
  for (auto [signal, token] : _subscriptions)
    signal->unsubscribe(token);
  [self watch:false];
}

- (void)viewDidMoveToWindow {
  [super viewDidMoveToWindow];
  [self watch:self.window != nil];
}

- (void)watch:(bool)on {
  Social* social = _context.core->social();
  if (!social || on == _watching) return;
  _watching = on;
  social->watch(on);
}

- (void)follow:(ChangeSignal&)signal {
  __weak SJTogetherPage* weakSelf = self;
  _subscriptions.emplace_back(&signal, signal.subscribe([weakSelf] { [weakSelf changed]; }));
}

- (void)changed {
  [NSObject cancelPreviousPerformRequestsWithTarget:self selector:@selector(reload) object:nil];
  [self performSelector:@selector(reload) withObject:nil afterDelay:reloadDelaySeconds];
}

- (void)reload {
  NSMutableArray<NSView*>* cards = [NSMutableArray arrayWithObject:familyHeader(_context, _page)];
  switch (_page) {
    case PanelPage::ranking:
      [cards addObjectsFromArray:[self rankingCards]];
      break;
    case PanelPage::calendar:
      [cards addObjectsFromArray:[self calendarCards]];
      break;
    default:
      [cards addObjectsFromArray:[self groupsCards]];
  }
  NSStackView* column = panelColumn(cards, 14);
  for (NSView* card in cards)
    [card.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  [_shown removeFromSuperview];
  _shown = SJPageFrame(SJString(std::string(pageTitle(_page))),
                       SJString(std::string(pageCaption(_page))), column);
  panelFill(self, _shown);
}

#pragma mark The rooms

- (NSArray<NSView*>*)groupsCards {
  const GroupsPage page = _context.core->groupsPage();
  if (page.signIn) return @[ [self signInCard:*page.signIn] ];
  __weak SJTogetherPage* weakSelf = self;
  NSMutableArray<NSView*>* cards = [NSMutableArray array];
  NSView* actions = panelRow(
      @[
        panelButton(SJString(page.create),
                    ^{
                      [weakSelf createGroup];
                    }),
        panelButton(SJString(page.join),
                    ^{
                      [weakSelf joinGroup];
                    }),
        panelButton(SJString(page.dress),
                    ^{
                      [weakSelf dress];
                    }),
      ],
      8);
  NSMutableArray<NSView*>* top =
      [NSMutableArray arrayWithObjects:heading(SJString(page.title)), actions,
                                       panelCaption(SJString(page.sharing)), nil];
  if (page.loading) [top addObject:[self spinner]];
  if (page.problem) [top addObject:panelCaption(SJString(*page.problem))];
  [cards addObject:panelCard(top)];
  if (page.empty) {
    [cards addObject:panelCard(@[
             heading(SJString(page.empty->first)), panelCaption(SJString(page.empty->second))
           ])];
  }
  for (const auto& room : page.rooms)
    [cards addObject:[self roomCard:room page:page]];
  return cards;
}

- (NSView*)spinner {
  NSProgressIndicator* spinner = [[NSProgressIndicator alloc] init];
  spinner.style = NSProgressIndicatorStyleSpinning;
  spinner.controlSize = NSControlSizeSmall;
  [spinner startAnimation:nil];
  return spinner;
}

- (NSView*)signInCard:(const GroupsPage::Card&)card {
  CloudAuth* auth = _context.core->cloudAuth();
  NSMutableArray<NSView*>* rows = [NSMutableArray
      arrayWithObjects:heading(SJString(card.title)), panelCaption(SJString(card.body)), nil];
  if (card.waiting) {
    [rows addObject:panelRow(@[ [self spinner], panelCaption(SJString(*card.waiting)) ], 8)];
    [rows addObject:panelButton(@"취소", ^{
            if (auth) auth->cancel();
          })];
  } else {
    [rows addObject:panelButton(SJString(card.apple), ^{
            if (auth) auth->signIn(CloudAuth::Provider::apple);
          })];
    [rows addObject:panelButton(SJString(card.google), ^{
            if (auth) auth->signIn(CloudAuth::Provider::google);
          })];
  }
  if (card.failure) [rows addObject:panelCaption(SJString(*card.failure))];
  return panelCard(rows);
}

- (NSView*)roomCard:(const GroupsPage::Room&)room page:(const GroupsPage&)page {
  __weak SJTogetherPage* weakSelf = self;
  NSMutableArray<NSView*>* rows = [NSMutableArray array];
  [rows addObject:heading(SJString(room.name + " · " + room.code))];
  NSMutableArray<NSView*>* seats = [NSMutableArray array];
  for (const auto& seat : room.seats)
    [seats addObject:seatView(seat)];
  if (seats.count > 0) [rows addObject:panelRow(seats, 16)];
  if (!room.away.empty()) {
    NSMutableArray<NSView*>* away = [NSMutableArray array];
    for (const auto& seat : room.away)
      [away addObject:seatView(seat)];
    [rows addObject:panelCaption(SJString(page.awayTitle))];
    [rows addObject:panelRow(away, 16)];
  }
  [rows addObject:heading(SJString(page.rankingTitle))];
  [rows addObject:rankingRows(room.focusRanking)];
  for (const auto& session : room.sessions)
    [rows addObject:panelCaption(SJString(session.title + " · " + session.when))];
  if (room.noSessions) {
    [rows addObject:panelCaption(SJString(*room.noSessions))];
    [rows addObject:panelCaption(SJString(room.scheduleHint))];
  }
  const std::string link = room.inviteLink;
  const std::string id = room.id;
  NSString* question = SJString(room.leaveConfirm);
  NSString* leave = SJString(room.leave);
  NSMutableArray<NSView*>* buttons = [NSMutableArray array];
  [buttons addObject:panelButton(SJString(room.invite), ^{
             [weakSelf copyInvite:link];
           })];
  if (room.owner) {
    [buttons addObject:panelButton(@"일정 추가", ^{
               [weakSelf addSession:id];
             })];
  }
  [buttons addObject:panelButton(leave, ^{
             if (confirm(question, leave)) [weakSelf leaveGroup:id];
           })];
  [rows addObject:panelRow(buttons, 8)];
  return panelCard(rows);
}

- (const StudyGroup*)group:(const std::string&)id {
  Social* social = _context.core->social();
  if (!social) return nullptr;
  for (const auto& group : social->groups())
    if (group.id == id) return &group;
  return nullptr;
}

- (void)copyInvite:(const std::string&)link {
  CloudAuth* auth = _context.core->cloudAuth();
  if (!auth) return;
  const std::string page = auth->config().joinPage();
  [NSPasteboard.generalPasteboard clearContents];
  [NSPasteboard.generalPasteboard setString:SJString(page + link.substr(link.find('?')))
                                    forType:NSPasteboardTypeString];
}

- (void)createGroup {
  Social* social = _context.core->social();
  const auto name = askLine(@"새 모임", SJString(GroupSheets::createHint),
                            SJString(GroupSheets::namePlaceholder));
  if (!social || !name) return;
  social->create(*name, [](CloudResult<StudyGroup> made) {
    if (!made.ok()) tell(SJString(GroupSheets::createFailed));
  });
}

- (void)joinGroup {
  Social* social = _context.core->social();
  const auto code = askLine(@"코드로 들어가기", SJString(GroupSheets::joinHint), @"1234 5678");
  if (!social || !code) return;
  social->join(*code, [](Social::Joined joined) {
    if (!joined.group) tell(SJString(joinErrorText(joined)));
  });
}

- (void)leaveGroup:(const std::string&)id {
  Social* social = _context.core->social();
  const StudyGroup* group = [self group:id];
  if (!social || !group) return;
  social->leave(*group, [](std::optional<CloudError> error) {
    if (error) tell(SJString(error->text()));
  });
}

// A session from now on the hour, weekly, with the title asked for.
- (void)addSession:(const std::string&)id {
  Social* social = _context.core->social();
  const StudyGroup* group = [self group:id];
  if (!social || !group) return;
  NSAlert* alert = [[NSAlert alloc] init];
  alert.messageText = @"일정 추가";
  alert.informativeText = SJString(GroupsPage::Room{}.scheduleHint);
  NSDatePicker* when = [[NSDatePicker alloc] initWithFrame:NSMakeRect(0, 32, 240, 24)];
  when.dateValue = [NSDate date];
  NSPopUpButton* repeat = [[NSPopUpButton alloc] initWithFrame:NSMakeRect(0, 0, 240, 26)
                                                     pullsDown:NO];
  for (auto r : {GroupSession::Repeat::none, GroupSession::Repeat::daily,
                 GroupSession::Repeat::weekdays, GroupSession::Repeat::weekly})
    [repeat addItemWithTitle:SJString(std::string(GroupSession::Repeat(r).title()))];
  NSView* box = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, 240, 58)];
  [box addSubview:when];
  [box addSubview:repeat];
  alert.accessoryView = box;
  [alert addButtonWithTitle:@"추가"];
  [alert addButtonWithTitle:@"취소"];
  if ([alert runModal] != NSAlertFirstButtonReturn) return;
  GroupSession session = GroupSession::draft(Date::fromUnix(when.dateValue.timeIntervalSince1970));
  session.repeats = static_cast<GroupSession::Repeat::Value>(repeat.indexOfSelectedItem);
  std::vector<GroupSession> sessions = group->sessions;
  sessions.push_back(session);
  social->save(*group, std::nullopt, sessions, [](std::optional<CloudError> error) {
    if (error) tell(SJString(error->text()));
  });
}

// The look's parts the figure draws: skin, hair colour and shirt.
- (void)dress {
  MateLook look = _context.core->mateLook();
  NSAlert* alert = [[NSAlert alloc] init];
  alert.messageText = @"내 캐릭터 꾸미기";
  SJMateFigureView* figure = [[SJMateFigureView alloc] initWithState:MateState::desk];
  figure.frame = NSMakeRect(150, 0, figureSide, figureSide);
  figure.look = look;
  NSView* box = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, 240, figureSide)];
  NSArray<NSString*>* names = @[ @"피부", @"머리색", @"옷" ];
  const int counts[] = {4, 6, 8};
  int* parts[] = {&look.skin, &look.hairColor, &look.shirt};
  NSMutableArray<NSPopUpButton*>* pickers = [NSMutableArray array];
  for (NSUInteger i = 0; i < names.count; ++i) {
    NSPopUpButton* picker =
        [[NSPopUpButton alloc] initWithFrame:NSMakeRect(0, 58 - 28.0 * i, 140, 26) pullsDown:NO];
    for (int n = 1; n <= counts[i]; ++n)
      [picker addItemWithTitle:[NSString stringWithFormat:@"%@ %d", names[i], n]];
    [picker selectItemAtIndex:std::clamp(*parts[i], 0, counts[i] - 1)];
    [pickers addObject:picker];
    [box addSubview:picker];
  }
  [box addSubview:figure];
  alert.accessoryView = box;
  [alert addButtonWithTitle:@"저장"];
  [alert addButtonWithTitle:@"취소"];
  if ([alert runModal] != NSAlertFirstButtonReturn) return;
  for (NSUInteger i = 0; i < pickers.count; ++i)
    *parts[i] = static_cast<int>(pickers[i].indexOfSelectedItem);
  _context.core->setMateLook(look);
  [self reload];
}

#pragma mark The ranking

- (NSArray<NSView*>*)rankingCards {
  const RankingPage page = _context.core->rankingPage(_groupId, _period);
  __weak SJTogetherPage* weakSelf = self;
  NSPopUpButton* scope = [[NSPopUpButton alloc] initWithFrame:NSZeroRect pullsDown:NO];
  for (const auto& s : page.scopes)
    [scope addItemWithTitle:SJString(s.title)];
  for (std::size_t i = 0; i < page.scopes.size(); ++i)
    if (page.scopes[i].groupId == page.groupId) [scope selectItemAtIndex:static_cast<NSInteger>(i)];
  std::vector<std::string> ids;
  for (const auto& s : page.scopes)
    ids.push_back(s.groupId);
  NSSegmentedControl* period =
      [NSSegmentedControl segmentedControlWithLabels:@[ @"오늘", @"이번 주" ]
                                        trackingMode:NSSegmentSwitchTrackingSelectOne
                                              target:nil
                                              action:nil];
  period.selectedSegment = page.period == RankingPage::Period::week ? 1 : 0;
  NSView* choose = panelRow(
      @[
        scope, period,
        panelButton(@"보기",
                    ^{
                      [weakSelf rank:ids[static_cast<std::size_t>(
                                         std::max<NSInteger>(0, scope.indexOfSelectedItem))]
                                week:period.selectedSegment == 1];
                    })
      ],
      8);
  if (page.empty) {
    return @[ panelCard(@[
      choose, heading(SJString(page.empty->first)), panelCaption(SJString(page.empty->second))
    ]) ];
  }
  return @[
    panelCard(@[ choose ]), panelCard(@[ heading(@"바른 자세"), rankingRows(page.good) ]),
    panelCard(@[ heading(@"집중"), rankingRows(page.focus) ])
  ];
}

- (void)rank:(const std::string&)groupId week:(bool)week {
  _groupId = groupId;
  _period = week ? RankingPage::Period::week : RankingPage::Period::today;
  [self reload];
}

#pragma mark The calendar

- (NSArray<NSView*>*)calendarCards {
  const CalendarPage page = _context.core->calendarPage(_selected);
  __weak SJTogetherPage* weakSelf = self;
  NSGridView* grid = [NSGridView gridViewWithNumberOfColumns:7 rows:0];
  NSMutableArray<NSView*>* week = [NSMutableArray array];
  for (const auto& cell : page.cells) {
    std::string label = std::to_string(cell.number);
    if (cell.sessions) label += "•";
    if (cell.focused) label += "✓";
    const Date day = cell.day;
    NSButton* button = panelButton(SJString(label), ^{
      [weakSelf select:day];
    });
    button.enabled = cell.inMonth;
    if (cell.selected) button.bezelColor = NSColor.controlAccentColor;
    [week addObject:button];
    if (week.count == 7) {
      [grid addRowWithViews:week];
      week = [NSMutableArray array];
    }
  }
  NSMutableArray<NSView*>* day = [NSMutableArray arrayWithObject:heading(SJString(page.day))];
  for (const auto& s : page.sessions)
    [day addObject:panelCaption(SJString(s.time + " · " + s.title + " · " + s.group))];
  if (page.noSessions) [day addObject:panelCaption(SJString(*page.noSessions))];
  [day addObject:heading(SJString(page.myFocus))];
  for (const auto& f : page.focus)
    [day addObject:panelCaption(SJString(f.time + " · " + f.preset + " · " + f.focused))];
  if (page.noFocus) [day addObject:panelCaption(SJString(*page.noFocus))];
  NSMutableArray<NSView*>* soon = [NSMutableArray arrayWithObject:heading(@"곧 시작")];
  for (const auto& s : page.soon)
    [soon addObject:panelCaption(SJString(s.time + " · " + s.title + " · " + s.group))];
  return @[ panelCard(@[ heading(SJString(page.month)), grid ]), panelCard(day), panelCard(soon) ];
}

- (void)select:(Date)day {
  _selected = day;
  [self reload];
}

@end

NSView<SJPanelPage>* SJMakeGroupsPage(const SJPanelContext& context) {
  return [[SJTogetherPage alloc] initWithContext:context page:PanelPage::groups];
}

NSView<SJPanelPage>* SJMakeRankingPage(const SJPanelContext& context) {
  return [[SJTogetherPage alloc] initWithContext:context page:PanelPage::ranking];
}

NSView<SJPanelPage>* SJMakeCalendarPage(const SJPanelContext& context) {
  return [[SJTogetherPage alloc] initWithContext:context page:PanelPage::calendar];
}
