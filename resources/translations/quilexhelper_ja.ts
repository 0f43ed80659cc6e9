<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>CustomAlertWindow</name>
    <message>
        <source>Software update</source>
        <comment>title of the alert that tells there is no newer version</comment>
        <translation>ソフトウェアアップデート</translation>
    </message>
    <message>
        <source>OK</source>
        <comment>button that closes the alert</comment>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>QuilexHelper</name>
    <message>
        <source>You&apos;re up to date</source>
        <comment>updated</comment>
        <translation>お使いのバージョンは最新です</translation>
    </message>
    <message>
        <source>%@ is currently the newest version</source>
        <comment>fmt</comment>
        <translation>現在の最新バージョンは %@ です</translation>
    </message>
    <message>
        <source>Open Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>ビデオ壁紙を開く</translation>
    </message>
    <message>
        <source>Close Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>ビデオ壁紙を閉じる</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>play/pause</comment>
        <translation>再生</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>pause play</comment>
        <translation>一時停止</translation>
    </message>
    <message>
        <source>Main Window</source>
        <comment>use to show main window</comment>
        <translation>メインウインドウ</translation>
    </message>
    <message>
        <source>Quit</source>
        <comment>quit application</comment>
        <translation>終了</translation>
    </message>
    <message>
        <source>Screen</source>
        <comment>title</comment>
        <translation>画面</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <comment>Check Update</comment>
        <translation>アップデートを確認...</translation>
    </message>
    <message>
        <source>Hide Desktop Icon</source>
        <comment>hide desktop icon</comment>
        <translation>デスクトップアイコンを隠す</translation>
    </message>
    <message>
        <source>Mute</source>
        <comment>Mute desktop video</comment>
        <translation>消音</translation>
    </message>
    <message>
        <source>Integration</source>
        <comment>make up all monitors into one player</comment>
        <translation>一体表示</translation>
    </message>
    <message>
        <source>Mirror</source>
        <comment>each monitor has same content</comment>
        <translation>ミラーリング</translation>
    </message>
    <message>
        <source>Single</source>
        <comment>Only play on one monitor</comment>
        <translation>単一画面</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>pause play</comment>
        <translation>再生</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>play</comment>
        <translation>一時停止</translation>
    </message>
    <message>
        <source>Version: %@</source>
        <comment>version</comment>
        <translation>バージョン: %@</translation>
    </message>
</context>
<context>
    <name>UpgradeWindow</name>
    <message>
        <source>New version</source>
        <comment>title of the update offer</comment>
        <translation>新しいバージョン</translation>
    </message>
    <message>
        <source>Close</source>
        <comment>button that closes the update offer</comment>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>A new version is available</source>
        <comment>headline of the update offer</comment>
        <translation>新しいバージョンがあります</translation>
    </message>
    <message>
        <source>About the new version</source>
        <comment>accessible name of the text of the update offer</comment>
        <translation>新しいバージョンについて</translation>
    </message>
    <message>
        <source>Get the update</source>
        <comment>button of the update offer</comment>
        <translation>アップデートを入手</translation>
    </message>
</context>
<context>
    <name>quilex::CardDelegate</name>
    <message>
        <source>File missing</source>
        <translation>ファイルなし</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>選択中</translation>
    </message>
    <message>
        <source>On the desktop</source>
        <translation>デスクトップに表示中</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>一時停止中</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>タイトル</translation>
    </message>
</context>
<context>
    <name>quilex::DesktopActions</name>
    <message>
        <source>Next video</source>
        <translation>次の動画</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>消音</translation>
    </message>
    <message>
        <source>Start at login</source>
        <translation>ログイン時に開始</translation>
    </message>
    <message>
        <source>One picture across all monitors</source>
        <translation>すべての画面に一つの映像</translation>
    </message>
    <message>
        <source>The same picture on each</source>
        <translation>各画面に同じ映像</translation>
    </message>
    <message>
        <source>One monitor only</source>
        <translation>一つの画面だけ</translation>
    </message>
    <message>
        <source>Repeat one video</source>
        <translation>一つの動画を繰り返す</translation>
    </message>
    <message>
        <source>Play the list</source>
        <translation>順番に再生</translation>
    </message>
    <message>
        <source>Shuffle</source>
        <translation>シャッフル</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>一時停止</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>再生</translation>
    </message>
    <message>
        <source>Close wallpaper</source>
        <translation>壁紙を閉じる</translation>
    </message>
    <message>
        <source>Open wallpaper</source>
        <translation>壁紙を開く</translation>
    </message>
</context>
<context>
    <name>quilex::DesktopPanel</name>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>デスクトップ</translation>
    </message>
    <message>
        <source>Arrangement</source>
        <translation>配置</translation>
    </message>
    <message>
        <source>Playing order</source>
        <translation>再生順</translation>
    </message>
    <message>
        <source>No video is chosen</source>
        <translation>動画は選ばれていません</translation>
    </message>
    <message>
        <source>This desktop has no status area for the wallpaper&apos;s menu. Everything in that menu can be done here.</source>
        <translation>このデスクトップには壁紙のメニューを表示する場所がありません。メニューの操作はすべてここでできます。</translation>
    </message>
    <message>
        <source>The picture stands still because %1.</source>
        <translation>映像は停止しています (%1)。</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryModel</name>
    <message>
        <source>chosen</source>
        <translation>選択中</translation>
    </message>
    <message>
        <source>playing on the desktop</source>
        <translation>デスクトップで再生中</translation>
    </message>
    <message>
        <source>paused on the desktop</source>
        <translation>デスクトップで一時停止中</translation>
    </message>
    <message>
        <source>file missing</source>
        <translation>ファイルなし</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryView</name>
    <message>
        <source>Videos</source>
        <translation>動画</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryWindow</name>
    <message>
        <source>Add videos…</source>
        <translation>動画を追加…</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>検索</translation>
    </message>
    <message>
        <source>Clear the search</source>
        <translation>検索を消去</translation>
    </message>
    <message>
        <source>Order of the videos</source>
        <translation>動画の並び順</translation>
    </message>
    <message>
        <source>By title</source>
        <translation>タイトル順</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>新しい順</translation>
    </message>
    <message>
        <source>Longest first</source>
        <translation>長い順</translation>
    </message>
    <message>
        <source>Largest picture first</source>
        <translation>画面の大きい順</translation>
    </message>
    <message>
        <source>Size of the covers</source>
        <translation>サムネイルの大きさ</translation>
    </message>
    <message>
        <source>&amp;Library</source>
        <translation>ライブラリー(&amp;L)</translation>
    </message>
    <message>
        <source>Add a folder…</source>
        <translation>フォルダーを追加…</translation>
    </message>
    <message>
        <source>Paste files</source>
        <translation>ファイルを貼り付け</translation>
    </message>
    <message>
        <source>Undo the removal</source>
        <translation>削除を元に戻す</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>&amp;Video</source>
        <translation>動画(&amp;V)</translation>
    </message>
    <message>
        <source>Show on the desktop</source>
        <translation>デスクトップに表示</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>名前を変更</translation>
    </message>
    <message>
        <source>Show in the file manager</source>
        <translation>ファイルマネージャーで表示</translation>
    </message>
    <message>
        <source>Find the file again…</source>
        <translation>ファイルを探し直す…</translation>
    </message>
    <message>
        <source>Remove from the library</source>
        <translation>ライブラリーから外す</translation>
    </message>
    <message>
        <source>V&amp;iew</source>
        <translation>表示(&amp;I)</translation>
    </message>
    <message>
        <source>Larger covers</source>
        <translation>サムネイルを大きく</translation>
    </message>
    <message>
        <source>Smaller covers</source>
        <translation>サムネイルを小さく</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>デスクトップ</translation>
    </message>
    <message>
        <source>&amp;Desktop</source>
        <translation>デスクトップ(&amp;D)</translation>
    </message>
    <message>
        <source>Looking for videos…</source>
        <translation>動画を探しています…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Add videos</source>
        <translation>動画を追加</translation>
    </message>
    <message>
        <source>Add a folder of videos</source>
        <translation>動画のフォルダーを追加</translation>
    </message>
    <message>
        <source>Where is the file now?</source>
        <translation>ファイルは今どこにありますか？</translation>
    </message>
    <message>
        <source>There are no files in the clipboard.</source>
        <translation>クリップボードにファイルはありません。</translation>
    </message>
    <message>
        <source>The wallpaper is not running.</source>
        <translation>動画壁紙は動いていません。</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>開始</translation>
    </message>
    <message>
        <source>There is no session bus, so it is not known whether the wallpaper runs.</source>
        <translation>セッションバスがないため、壁紙が動いているかどうかわかりません。</translation>
    </message>
    <message>
        <source>The library cannot be read</source>
        <translation>ライブラリーを読めません</translation>
    </message>
    <message>
        <source>The library is empty</source>
        <translation>ライブラリーは空です</translation>
    </message>
    <message>
        <source>Drop videos or folders here, or choose “Add videos…”.</source>
        <translation>動画やフォルダーをここにドロップするか、「動画を追加…」を選んでください。</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>見つかりません</translation>
    </message>
    <message>
        <source>No title contains “%1”.</source>
        <translation>「%1」を含むタイトルはありません。</translation>
    </message>
    <message>
        <source>These loops come with Quilex; double-click one to show it on the desktop. For more, drop videos or a folder of them here, such as your Videos folder.</source>
        <translation>これらは Quilex に付属する動画です。ダブルクリックするとデスクトップに表示されます。もっと増やすには、動画やそのフォルダー（「ビデオ」フォルダーなど）をここにドロップしてください。</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>Adding %1 of %2: %3</source>
        <translation>追加中 %1 / %2: %3</translation>
    </message>
    <message>
        <source>No videos were found there.</source>
        <translation>そこに動画は見つかりませんでした。</translation>
    </message>
    <message>
        <source>%1 is in the library already.</source>
        <translation>%1 はすでにライブラリーにあります。</translation>
    </message>
    <message>
        <source>%1 was found again.</source>
        <translation>%1 が再び見つかりました。</translation>
    </message>
    <message>
        <source>Added: %1.</source>
        <translation>追加: %1。</translation>
    </message>
    <message>
        <source>In the library already: %1.</source>
        <translation>すでにライブラリーにあるもの: %1。</translation>
    </message>
    <message>
        <source>Found again: %1.</source>
        <translation>再び見つかったもの: %1。</translation>
    </message>
    <message>
        <source>Cannot be played: %1.</source>
        <translation>再生できないもの: %1。</translation>
    </message>
    <message>
        <source>The rest was cancelled.</source>
        <translation>残りはキャンセルされました。</translation>
    </message>
    <message>
        <source>Show why</source>
        <translation>理由を表示</translation>
    </message>
    <message>
        <source>Files that cannot be played</source>
        <translation>再生できないファイル</translation>
    </message>
    <message>
        <source>File</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>理由</translation>
    </message>
</context>
<context>
    <name>quilex::MessageBar</name>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>quilex::MonitorView</name>
    <message>
        <source>Monitors</source>
        <translation>画面</translation>
    </message>
    <message>
        <source>Monitor %1: %2, %3</source>
        <translation>画面 %1: %2、%3</translation>
    </message>
    <message>
        <source>Click to play on this monitor only</source>
        <translation>クリックするとこの画面だけで再生します</translation>
    </message>
</context>
<context>
    <name>quilex::WindowLogic</name>
    <message>
        <source>Removed from the library: %1. The files stay where they are.</source>
        <translation>ライブラリーから外しました: %1。ファイルは元の場所に残ります。</translation>
    </message>
    <message>
        <source>The wallpaper cannot be started: %1 is missing.</source>
        <translation>壁紙を開始できません: %1 がありません。</translation>
    </message>
</context>
</TS>
