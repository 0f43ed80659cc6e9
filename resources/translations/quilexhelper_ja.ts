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
</TS>
