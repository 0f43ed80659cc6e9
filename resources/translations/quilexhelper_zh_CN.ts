<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>CustomAlertWindow</name>
    <message>
        <source>Software update</source>
        <comment>title of the alert that tells there is no newer version</comment>
        <translation>软件更新</translation>
    </message>
    <message>
        <source>OK</source>
        <comment>button that closes the alert</comment>
        <translation>好</translation>
    </message>
</context>
<context>
    <name>QuilexHelper</name>
    <message>
        <source>You&apos;re up to date</source>
        <comment>updated</comment>
        <translation>已是最新版本</translation>
    </message>
    <message>
        <source>%@ is currently the newest version</source>
        <comment>fmt</comment>
        <translation>%@ 是当前的最新版本</translation>
    </message>
    <message>
        <source>Open Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>打开视频壁纸</translation>
    </message>
    <message>
        <source>Close Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>关闭视频壁纸</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>play/pause</comment>
        <translation>播放</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>pause play</comment>
        <translation>暂停</translation>
    </message>
    <message>
        <source>Main Window</source>
        <comment>use to show main window</comment>
        <translation>主窗口</translation>
    </message>
    <message>
        <source>Quit</source>
        <comment>quit application</comment>
        <translation>退出</translation>
    </message>
    <message>
        <source>Screen</source>
        <comment>title</comment>
        <translation>屏幕</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <comment>Check Update</comment>
        <translation>检查更新…</translation>
    </message>
    <message>
        <source>Hide Desktop Icon</source>
        <comment>hide desktop icon</comment>
        <translation>隐藏桌面图标</translation>
    </message>
    <message>
        <source>Mute</source>
        <comment>Mute desktop video</comment>
        <translation>静音</translation>
    </message>
    <message>
        <source>Integration</source>
        <comment>make up all monitors into one player</comment>
        <translation>拼接</translation>
    </message>
    <message>
        <source>Mirror</source>
        <comment>each monitor has same content</comment>
        <translation>镜像</translation>
    </message>
    <message>
        <source>Single</source>
        <comment>Only play on one monitor</comment>
        <translation>单屏</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>pause play</comment>
        <translation>播放</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>play</comment>
        <translation>暂停</translation>
    </message>
    <message>
        <source>Version: %@</source>
        <comment>version</comment>
        <translation>版本：%@</translation>
    </message>
</context>
<context>
    <name>UpgradeWindow</name>
    <message>
        <source>New version</source>
        <comment>title of the update offer</comment>
        <translation>新版本</translation>
    </message>
    <message>
        <source>Close</source>
        <comment>button that closes the update offer</comment>
        <translation>关闭</translation>
    </message>
    <message>
        <source>A new version is available</source>
        <comment>headline of the update offer</comment>
        <translation>有新版本可用</translation>
    </message>
    <message>
        <source>About the new version</source>
        <comment>accessible name of the text of the update offer</comment>
        <translation>关于新版本</translation>
    </message>
    <message>
        <source>Get the update</source>
        <comment>button of the update offer</comment>
        <translation>获取更新</translation>
    </message>
</context>
<context>
    <name>quilex::CardDelegate</name>
    <message>
        <source>File missing</source>
        <translation>文件缺失</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>已选择</translation>
    </message>
    <message>
        <source>On the desktop</source>
        <translation>桌面播放中</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>已暂停</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>标题</translation>
    </message>
</context>
<context>
    <name>quilex::DesktopActions</name>
    <message>
        <source>Next video</source>
        <translation>下一个视频</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>静音</translation>
    </message>
    <message>
        <source>Start at login</source>
        <translation>登录时启动</translation>
    </message>
    <message>
        <source>One picture across all monitors</source>
        <translation>一幅画面跨越所有屏幕</translation>
    </message>
    <message>
        <source>The same picture on each</source>
        <translation>每个屏幕显示相同画面</translation>
    </message>
    <message>
        <source>One monitor only</source>
        <translation>仅一个屏幕</translation>
    </message>
    <message>
        <source>Repeat one video</source>
        <translation>单个循环</translation>
    </message>
    <message>
        <source>Play the list</source>
        <translation>列表播放</translation>
    </message>
    <message>
        <source>Shuffle</source>
        <translation>随机播放</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>暂停</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>播放</translation>
    </message>
    <message>
        <source>Close wallpaper</source>
        <translation>关闭壁纸</translation>
    </message>
    <message>
        <source>Open wallpaper</source>
        <translation>打开壁纸</translation>
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
        <translation>桌面</translation>
    </message>
    <message>
        <source>Arrangement</source>
        <translation>排列</translation>
    </message>
    <message>
        <source>Playing order</source>
        <translation>播放顺序</translation>
    </message>
    <message>
        <source>No video is chosen</source>
        <translation>未选择视频</translation>
    </message>
    <message>
        <source>This desktop has no status area for the wallpaper&apos;s menu. Everything in that menu can be done here.</source>
        <translation>此桌面没有用于壁纸菜单的状态区域。该菜单中的一切都可以在此完成。</translation>
    </message>
    <message>
        <source>The picture stands still because %1.</source>
        <translation>画面已停止（%1）。</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryModel</name>
    <message>
        <source>chosen</source>
        <translation>已选择</translation>
    </message>
    <message>
        <source>playing on the desktop</source>
        <translation>正在桌面播放</translation>
    </message>
    <message>
        <source>paused on the desktop</source>
        <translation>在桌面已暂停</translation>
    </message>
    <message>
        <source>file missing</source>
        <translation>文件缺失</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryView</name>
    <message>
        <source>Videos</source>
        <translation>视频</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryWindow</name>
    <message>
        <source>Add videos…</source>
        <translation>添加视频…</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
    <message>
        <source>Clear the search</source>
        <translation>清除搜索</translation>
    </message>
    <message>
        <source>Order of the videos</source>
        <translation>视频排序</translation>
    </message>
    <message>
        <source>By title</source>
        <translation>按标题</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>最新优先</translation>
    </message>
    <message>
        <source>Longest first</source>
        <translation>最长优先</translation>
    </message>
    <message>
        <source>Largest picture first</source>
        <translation>画面最大优先</translation>
    </message>
    <message>
        <source>Size of the covers</source>
        <translation>封面大小</translation>
    </message>
    <message>
        <source>&amp;Library</source>
        <translation>库(&amp;L)</translation>
    </message>
    <message>
        <source>Add a folder…</source>
        <translation>添加文件夹…</translation>
    </message>
    <message>
        <source>Paste files</source>
        <translation>粘贴文件</translation>
    </message>
    <message>
        <source>Undo the removal</source>
        <translation>撤销移除</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>&amp;Video</source>
        <translation>视频(&amp;V)</translation>
    </message>
    <message>
        <source>Show on the desktop</source>
        <translation>显示在桌面上</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>重命名</translation>
    </message>
    <message>
        <source>Show in the file manager</source>
        <translation>在文件管理器中显示</translation>
    </message>
    <message>
        <source>Find the file again…</source>
        <translation>重新查找文件…</translation>
    </message>
    <message>
        <source>Remove from the library</source>
        <translation>从库中移除</translation>
    </message>
    <message>
        <source>V&amp;iew</source>
        <translation>查看(&amp;I)</translation>
    </message>
    <message>
        <source>Larger covers</source>
        <translation>放大封面</translation>
    </message>
    <message>
        <source>Smaller covers</source>
        <translation>缩小封面</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>桌面</translation>
    </message>
    <message>
        <source>&amp;Desktop</source>
        <translation>桌面(&amp;D)</translation>
    </message>
    <message>
        <source>Looking for videos…</source>
        <translation>正在查找视频…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Add videos</source>
        <translation>添加视频</translation>
    </message>
    <message>
        <source>Add a folder of videos</source>
        <translation>添加视频文件夹</translation>
    </message>
    <message>
        <source>Where is the file now?</source>
        <translation>文件现在在哪里？</translation>
    </message>
    <message>
        <source>There are no files in the clipboard.</source>
        <translation>剪贴板中没有文件。</translation>
    </message>
    <message>
        <source>The wallpaper is not running.</source>
        <translation>视频壁纸未运行。</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>启动</translation>
    </message>
    <message>
        <source>There is no session bus, so it is not known whether the wallpaper runs.</source>
        <translation>没有会话总线，因此无法得知壁纸是否在运行。</translation>
    </message>
    <message>
        <source>The library cannot be read</source>
        <translation>无法读取库</translation>
    </message>
    <message>
        <source>The library is empty</source>
        <translation>库是空的</translation>
    </message>
    <message>
        <source>Drop videos or folders here, or choose “Add videos…”.</source>
        <translation>将视频或文件夹拖放到此处，或选择“添加视频…”。</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>未找到</translation>
    </message>
    <message>
        <source>No title contains “%1”.</source>
        <translation>没有标题包含“%1”。</translation>
    </message>
    <message>
        <source>These loops come with Quilex; double-click one to show it on the desktop. For more, drop videos or a folder of them here, such as your Videos folder.</source>
        <translation>这些循环视频随 Quilex 附带；双击即可显示在桌面上。要添加更多，请将视频或其文件夹（例如您的“视频”文件夹）拖放到此处。</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Adding %1 of %2: %3</source>
        <translation>正在添加 %1 / %2：%3</translation>
    </message>
    <message>
        <source>No videos were found there.</source>
        <translation>那里没有找到视频。</translation>
    </message>
    <message>
        <source>%1 is in the library already.</source>
        <translation>%1 已在库中。</translation>
    </message>
    <message>
        <source>%1 was found again.</source>
        <translation>已重新找到 %1。</translation>
    </message>
    <message>
        <source>Added: %1.</source>
        <translation>已添加：%1。</translation>
    </message>
    <message>
        <source>In the library already: %1.</source>
        <translation>已在库中：%1。</translation>
    </message>
    <message>
        <source>Found again: %1.</source>
        <translation>重新找到：%1。</translation>
    </message>
    <message>
        <source>Cannot be played: %1.</source>
        <translation>无法播放：%1。</translation>
    </message>
    <message>
        <source>The rest was cancelled.</source>
        <translation>其余已取消。</translation>
    </message>
    <message>
        <source>Show why</source>
        <translation>显示原因</translation>
    </message>
    <message>
        <source>Files that cannot be played</source>
        <translation>无法播放的文件</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>原因</translation>
    </message>
</context>
<context>
    <name>quilex::MessageBar</name>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>quilex::MonitorView</name>
    <message>
        <source>Monitors</source>
        <translation>屏幕</translation>
    </message>
    <message>
        <source>Monitor %1: %2, %3</source>
        <translation>屏幕 %1：%2，%3</translation>
    </message>
    <message>
        <source>Click to play on this monitor only</source>
        <translation>单击以仅在此屏幕播放</translation>
    </message>
</context>
<context>
    <name>quilex::WindowLogic</name>
    <message>
        <source>Removed from the library: %1. The files stay where they are.</source>
        <translation>已从库中移除：%1。文件保留在原处。</translation>
    </message>
    <message>
        <source>The wallpaper cannot be started: %1 is missing.</source>
        <translation>无法启动壁纸：缺少 %1。</translation>
    </message>
</context>
</TS>
