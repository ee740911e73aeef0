// A host that lends windows and sees the message of an ID clash.

#pragma once

#include "file_rows.h"
#include "message_watch.h"
#include "saving_host_test.h"

#include <optional>
#include <string>

/// The strings that a clash message is made of.
struct ClashStrings {
    std::string title = "Storage manager";
    std::string text = "Two of %s have the ID %d.";
    std::string fonts = "fonts";
    std::string typeTwo = "macros";
    std::string typeEight = "forms";

    /// The containers of the strings document.
    std::string Containers() const {
        return "<Main><Item Title='" + title + "'/></Main><StringTable><Item DuplicateID_EditingFile_SendingProject='" +
               text + "'/><Item FontFile_SPFTTF='" + fonts + "'/></StringTable><ProjectFilter><Item ID='8' Value='" +
               typeEight + "'/><Item ID='2' Value='" + typeTwo + "'/></ProjectFilter>";
    }
};

constexpr unsigned int kOkButtonAndErrorIcon = 0x10;

class IdMessageTest : public SavingHostTest {
protected:
    /// Opens documents afresh: the main document with these containers, the strings with these texts.
    void OpenWith(const std::string& containers, const ClashStrings& strings = {}) {
        CloseAll();
        OpenMain(containers, strings.Containers());
    }

    /// The text of the one message of a call; none when it showed none. More than one fails the test.
    template <class Call>
    std::optional<std::string> MessageOf(Call call) {
        const CMessageWatch watch;
        call();
        EXPECT_LE(watch.Messages().size(), 1u);
        return watch.Messages().empty() ? std::nullopt : std::optional(watch.Messages().front().text);
    }
};

/// Checks how a call that meets a clash goes about the windows that it is lent: `call` takes a MessageWindows*.
template <class Call>
void ExpectWindowsDisabledAroundTheMessage(Call call) {
    CTestWindow owner;
    CTestWindow first;
    CTestWindow second;
    CTestWindow last;
    const CTestWindow notLent;
    MessageWindows windows{};
    windows.owner = owner.Slot();
    windows.windows[2] = second.Slot(); // slots 0 and 1 are empty: what follows an empty slot counts too
    windows.windows[3] = first.Slot();
    windows.windows[1023] = last.Slot();

    const CMessageWatch watch;
    call(&windows);

    ASSERT_EQ(watch.Messages().size(), 1u);
    const SeenMessage& message = watch.Messages().front();
    EXPECT_EQ(message.owner, owner.Handle());
    EXPECT_EQ(message.flags, kOkButtonAndErrorIcon);
    EXPECT_EQ(message.disabled, (std::vector<WindowHandle>{first.Handle(), second.Handle(), last.Handle()}));
    EXPECT_EQ(watch.Changes(), (std::vector<WindowChange>{{second.Handle(), false},
                                                          {first.Handle(), false},
                                                          {last.Handle(), false},
                                                          {second.Handle(), true},
                                                          {first.Handle(), true},
                                                          {last.Handle(), true}}));
    EXPECT_TRUE(notLent.IsEnabled());
}

/// The same with a slot that is not empty and holds no window.
template <class Call>
void ExpectWindowsBehindANullHandleDisabled(Call call) {
    CTestWindow window;
    WindowHandle none = nullptr;
    MessageWindows windows{};
    windows.windows[0] = &none;
    windows.windows[1] = window.Slot();
    const CMessageWatch watch;
    call(&windows);
    ASSERT_EQ(watch.Messages().size(), 1u);
    EXPECT_EQ(watch.Messages().front().disabled, std::vector<WindowHandle>{window.Handle()});
    EXPECT_TRUE(window.IsEnabled());
    ExpectNullHandlesAsked(watch.NullHandles());
}

/// The same while the host clears its record, and lends another window in it, before the user has answered.
template <class Call>
void ExpectTheDisabledWindowsEnabledAgain(Call call) {
    CTestWindow first;
    CTestWindow second;
    CTestWindow another;
    WindowHandle changing = second.Handle();
    MessageWindows windows{};
    windows.windows[7] = first.Slot();
    windows.windows[9] = &changing;

    const CMessageWatch watch([&] {
        windows.windows[7] = nullptr;
        windows.windows[8] = another.Slot();
        changing = another.Handle();
    });
    call(&windows);

    EXPECT_EQ(watch.Changes(),
              (std::vector<WindowChange>{
                  {first.Handle(), false}, {second.Handle(), false}, {first.Handle(), true}, {second.Handle(), true}}));
}
