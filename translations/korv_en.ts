<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>AccountRequest</name>
    <message>
        <source>无法连接账号服务，请检查网络后重试</source>
        <translation>Cannot reach the account service. Check the network and try again.</translation>
    </message>
    <message>
        <source>请求失败（错误码 %1）</source>
        <translation>Request failed (error code %1)</translation>
    </message>
</context>
<context>
    <name>CSelectMachineBox</name>
    <message>
        <source>连接机床</source>
        <translation>Connect to a machine</translation>
    </message>
    <message>
        <source>局域网内的机床</source>
        <translation>Machines on the local network</translation>
    </message>
    <message>
        <source>连接</source>
        <translation>Connect</translation>
    </message>
    <message>
        <source>手动输入机床IP地址，如 192.168.1.100</source>
        <translation>Machine IP address, e.g. 192.168.1.100</translation>
    </message>
    <message>
        <source>正在搜索机床...</source>
        <translation>Searching for machines...</translation>
    </message>
    <message>
        <source>未知序列号</source>
        <translation>Unknown serial number</translation>
    </message>
    <message>
        <source>在线</source>
        <translation>Online</translation>
    </message>
    <message>
        <source>离线</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>IP地址格式不正确，请重新输入</source>
        <translation>The IP address is not valid. Please enter it again.</translation>
    </message>
    <message>
        <source>请选择机床或输入机床IP地址</source>
        <translation>Select a machine or enter its IP address</translation>
    </message>
    <message>
        <source>正在连接机床，请稍候...</source>
        <translation>Connecting to the machine, please wait...</translation>
    </message>
    <message>
        <source>连接失败，请检查网络连接和机床IP地址</source>
        <translation>Connection failed. Check the network and the machine&apos;s IP address.</translation>
    </message>
    <message>
        <source>机床的文件名编码</source>
        <translation>The machine&apos;s file-name encoding</translation>
    </message>
</context>
<context>
    <name>CVarnokMessageBox</name>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>是</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>否</source>
        <translation>No</translation>
    </message>
    <message>
        <source>忽略</source>
        <translation>Ignore</translation>
    </message>
</context>
<context>
    <name>CVarnokSelectBox</name>
    <message>
        <source>刷新</source>
        <translation>Refresh</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>CamPlugin::CamPluginFile</name>
    <message>
        <source>File Management Workbench Plugin</source>
        <translation>File Management Workbench Plugin</translation>
    </message>
    <message>
        <source>文件</source>
        <translation>Files</translation>
    </message>
    <message>
        <source>文件：管理本地与机床上的文件，上传、下载程序并查看机床状态</source>
        <translation>Files: manage the files on this computer and on the machine, upload and download programs, and view the machine status</translation>
    </message>
</context>
<context>
    <name>DeviceBindDialog</name>
    <message>
        <source>绑定设备</source>
        <translation>Bind device</translation>
    </message>
    <message>
        <source>绑定</source>
        <translation>Bind</translation>
    </message>
    <message>
        <source>设备绑定成功</source>
        <translation>Device bound</translation>
    </message>
    <message>
        <source>设备绑定失败</source>
        <translation>Binding the device failed</translation>
    </message>
</context>
<context>
    <name>DeviceUnbindDialog</name>
    <message>
        <source>解绑设备</source>
        <translation>Unbind device</translation>
    </message>
    <message>
        <source>解绑</source>
        <translation>Unbind</translation>
    </message>
    <message>
        <source>设备解绑成功</source>
        <translation>Device unbound</translation>
    </message>
    <message>
        <source>设备解绑失败</source>
        <translation>Unbinding the device failed</translation>
    </message>
</context>
<context>
    <name>DeviceVerifyDialog</name>
    <message>
        <source>设备序列号：%1</source>
        <translation>Device serial number: %1</translation>
    </message>
    <message>
        <source>请输入手机号码</source>
        <translation>Enter your mobile number</translation>
    </message>
    <message>
        <source>手机号码</source>
        <translation>Mobile number</translation>
    </message>
    <message>
        <source>请输入短信验证码</source>
        <translation>Enter the SMS code</translation>
    </message>
    <message>
        <source>获取验证码</source>
        <translation>Get code</translation>
    </message>
    <message>
        <source>验证码</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>请输入正确的手机号码</source>
        <translation>Please enter a valid mobile number</translation>
    </message>
    <message>
        <source>请先获取短信验证码</source>
        <translation>Please get an SMS code first</translation>
    </message>
    <message>
        <source>正在请求，请稍候...</source>
        <translation>Sending the request, please wait...</translation>
    </message>
    <message>
        <source>获取短信验证码失败：%1</source>
        <translation>Could not get an SMS code: %1</translation>
    </message>
    <message>
        <source>验证码已发送，请查看手机短信</source>
        <translation>The code has been sent. Please check your text messages.</translation>
    </message>
    <message>
        <source>短信验证码已发送至 %1</source>
        <translation>SMS code sent to %1</translation>
    </message>
    <message>
        <source>%1：%2，SN: %3</source>
        <translation>%1: %2, SN: %3</translation>
    </message>
    <message>
        <source>%1，SN: %2，手机号码: %3</source>
        <translation>%1, SN: %2, mobile number: %3</translation>
    </message>
    <message>
        <source>%1秒后重新获取</source>
        <translation>Resend in %1 s</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>中国大陆</source>
        <translation>Mainland China</translation>
    </message>
    <message>
        <source>中国香港</source>
        <translation>Hong Kong, China</translation>
    </message>
    <message>
        <source>中国澳门</source>
        <translation>Macao, China</translation>
    </message>
    <message>
        <source>中国台湾</source>
        <translation>Taiwan, China</translation>
    </message>
    <message>
        <source>美国/加拿大</source>
        <translation>USA/Canada</translation>
    </message>
    <message>
        <source>英国</source>
        <translation>United Kingdom</translation>
    </message>
    <message>
        <source>德国</source>
        <translation>Germany</translation>
    </message>
    <message>
        <source>日本</source>
        <translation>Japan</translation>
    </message>
</context>
<context>
    <name>FileManager</name>
    <message>
        <source>上传至机床</source>
        <translation>Upload to machine</translation>
    </message>
    <message>
        <source>从机床下载</source>
        <translation>Download from machine</translation>
    </message>
</context>
<context>
    <name>FilePageController</name>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>文件冲突确认</source>
        <translation>File conflict</translation>
    </message>
    <message>
        <source>文件 &quot;%1&quot; 在本地和机床中均存在，内容不一致。

请选择要保留的版本：</source>
        <translation>&quot;%1&quot; exists on this computer and on the machine with different contents.

Which version do you want to keep?</translation>
    </message>
    <message>
        <source>保存本地版本</source>
        <translation>Keep local version</translation>
    </message>
    <message>
        <source>保存机床版本</source>
        <translation>Keep machine version</translation>
    </message>
    <message>
        <source>跳过</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>包含子文件夹</source>
        <translation>Include subfolders</translation>
    </message>
    <message>
        <source>同步前预览</source>
        <translation>Synchronisation preview</translation>
    </message>
    <message>
        <source>比较文件内容</source>
        <translation>Compare file contents</translation>
    </message>
    <message>
        <source>机床未连接</source>
        <translation>No machine connected</translation>
    </message>
    <message>
        <source>
    本地：%1
    机床：%2</source>
        <translation>
    Local: %1
    Machine: %2</translation>
    </message>
    <message>
        <source>比较</source>
        <translation>Compare</translation>
    </message>
    <message>
        <source>本地文件：%1</source>
        <translation>Local file: %1</translation>
    </message>
</context>
<context>
    <name>FilePanelOperations</name>
    <message>
        <source>上一次粘贴尚未完成，请稍候</source>
        <translation>The previous paste is still running, please wait</translation>
    </message>
    <message>
        <source>粘贴文件</source>
        <translation>Paste files</translation>
    </message>
    <message>
        <source>正在粘贴 %1 个文件，请稍候</source>
        <translation>Pasting %1 files, please wait</translation>
    </message>
    <message>
        <source>粘贴成功！</source>
        <translation>Pasted.</translation>
    </message>
    <message>
        <source>部分文件粘贴失败！</source>
        <translation>Some files could not be pasted.</translation>
    </message>
    <message>
        <source>确定删除以上文件？</source>
        <translation>Delete the files above?</translation>
    </message>
    <message>
        <source> 文件已移至回收站：</source>
        <translation> Moved to the trash: </translation>
    </message>
    <message>
        <source> 移至回收站失败，错误码：</source>
        <translation> Could not move to the trash, error: </translation>
    </message>
    <message>
        <source>部分文件删除失败！</source>
        <translation>Some files could not be deleted.</translation>
    </message>
    <message>
        <source>单层目录创建成功：</source>
        <translation>Folder created: </translation>
    </message>
    <message>
        <source>单层目录创建失败：</source>
        <translation>Could not create the folder: </translation>
    </message>
    <message>
        <source>文件创建成功：</source>
        <translation>File created: </translation>
    </message>
    <message>
        <source>文件创建失败：</source>
        <translation>Could not create the file: </translation>
    </message>
    <message>
        <source>文件类型 %1 不支持，不允许重命名</source>
        <translation>File type %1 is not supported; the file cannot be renamed to it</translation>
    </message>
    <message>
        <source>机床文件重命名后缀不合法: %1</source>
        <translation>Not a machine program type: %1</translation>
    </message>
    <message>
        <source>源目录不存在：</source>
        <translation>The source folder does not exist: </translation>
    </message>
    <message>
        <source>目标目录已存在：</source>
        <translation>The destination folder already exists: </translation>
    </message>
    <message>
        <source>目录重命名失败：</source>
        <translation>Could not rename the folder: </translation>
    </message>
    <message>
        <source>文件重命名失败：</source>
        <translation>Could not rename the file: </translation>
    </message>
    <message>
        <source>机床没有回收站，文件将从机床上永久删除。</source>
        <translation>The machine has no trash: the files are deleted from it for good.</translation>
    </message>
</context>
<context>
    <name>FileSelectPanel</name>
    <message>
        <source>本地文件</source>
        <translation>Local files</translation>
    </message>
    <message>
        <source>只显示机床可用的文件类型</source>
        <translation>Show only the file types the machine can use</translation>
    </message>
    <message>
        <source>一键过滤</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>后退</source>
        <translation>Back</translation>
    </message>
    <message>
        <source>前进</source>
        <translation>Forward</translation>
    </message>
    <message>
        <source>上一级</source>
        <translation>Up</translation>
    </message>
    <message>
        <source>我的电脑</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>&gt;</source>
        <translation>&gt;</translation>
    </message>
    <message>
        <source>刷新</source>
        <translation>Refresh</translation>
    </message>
    <message>
        <source>文件夹</source>
        <translation>Folder</translation>
    </message>
    <message>
        <source>加载中...</source>
        <translation>Loading...</translation>
    </message>
    <message>
        <source>名称</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>修改时间</source>
        <translation>Modified</translation>
    </message>
    <message>
        <source>格式</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>大小</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>新建文件</source>
        <translation>New file</translation>
    </message>
    <message>
        <source>新建文件夹</source>
        <translation>New folder</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>重命名</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>打开</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>复制</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>剪切</source>
        <translation>Cut</translation>
    </message>
    <message>
        <source>粘贴</source>
        <translation>Paste</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>Desktop</translation>
    </message>
    <message>
        <source>下载</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Documents</translation>
    </message>
    <message>
        <source>获取机床文件列表失败！</source>
        <translation>Could not list the machine&apos;s files.</translation>
    </message>
    <message>
        <source>目录不存在或无权限访问。</source>
        <translation>The folder does not exist or cannot be accessed.</translation>
    </message>
    <message>
        <source>没有权限访问该目录。</source>
        <translation>You have no permission to open this folder.</translation>
    </message>
    <message>
        <source>文件不存在或无权限访问。</source>
        <translation>The file does not exist or cannot be accessed.</translation>
    </message>
    <message>
        <source>所选路径不是文件。</source>
        <translation>The selected path is not a file.</translation>
    </message>
    <message>
        <source>没有权限读取该文件。</source>
        <translation>You have no permission to read this file.</translation>
    </message>
    <message>
        <source>无法打开文件，请检查文件关联程序。</source>
        <translation>Cannot open the file. Check which program opens this type of file.</translation>
    </message>
    <message>
        <source>路径不能为空</source>
        <translation>The path must not be empty</translation>
    </message>
    <message>
        <source>路径不存在: %1</source>
        <translation>Path not found: %1</translation>
    </message>
    <message>
        <source>找不到路径&quot;%1&quot;,请检查拼写并重试。</source>
        <translation>Cannot find &quot;%1&quot;. Check the spelling and try again.</translation>
    </message>
    <message>
        <source>可移动磁盘</source>
        <translation>Removable disk</translation>
    </message>
    <message>
        <source>网络驱动器</source>
        <translation>Network drive</translation>
    </message>
    <message>
        <source>光盘驱动器</source>
        <translation>CD drive</translation>
    </message>
    <message>
        <source>本地磁盘</source>
        <translation>Local disk</translation>
    </message>
    <message>
        <source>历史版本…</source>
        <translation>History…</translation>
    </message>
</context>
<context>
    <name>FileTreeView</name>
    <message>
        <source>快捷方式</source>
        <translation>Quick access</translation>
    </message>
</context>
<context>
    <name>FleetModel</name>
    <message>
        <source>%1（已连接）</source>
        <translation>%1 (connected)</translation>
    </message>
    <message>
        <source>从未</source>
        <translation>Never</translation>
    </message>
    <message>
        <source>机床</source>
        <translation>Machine</translation>
    </message>
    <message>
        <source>地址</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>State</translation>
    </message>
    <message>
        <source>当前程序</source>
        <translation>Current program</translation>
    </message>
    <message>
        <source>进度</source>
        <translation>Progress</translation>
    </message>
    <message>
        <source>剩余时间</source>
        <translation>Time left</translation>
    </message>
    <message>
        <source>报警</source>
        <translation>Alarm</translation>
    </message>
    <message>
        <source>最后响应</source>
        <translation>Last heard</translation>
    </message>
    <message>
        <source>发送结果</source>
        <translation>Send result</translation>
    </message>
</context>
<context>
    <name>FleetPage</name>
    <message>
        <source>连接</source>
        <translation>Connect</translation>
    </message>
    <message>
        <source>发送程序…</source>
        <translation>Send programs…</translation>
    </message>
    <message>
        <source>查找机床</source>
        <translation>Find machines</translation>
    </message>
    <message>
        <source>筛选：机床、地址、状态、程序或报警</source>
        <translation>Filter: machine, address, state, program or alarm</translation>
    </message>
</context>
<context>
    <name>FleetSendController</name>
    <message>
        <source>……另有 %1 台机床</source>
        <translation>… and %1 more machines</translation>
    </message>
    <message>
        <source>以下机床上已有同名文件，是否全部覆盖？</source>
        <translation>These machines already have files of the same name. Replace them all?</translation>
    </message>
    <message>
        <source>选择要发送的程序</source>
        <translation>Choose the programs to send</translation>
    </message>
    <message>
        <source>数控程序 (*.nc *.ngc *.tap *.mpf *.txt);;所有文件 (*)</source>
        <translation>NC programs (*.nc *.ngc *.tap *.mpf *.txt);;All files (*)</translation>
    </message>
    <message>
        <source>等待发送</source>
        <translation>Waiting to send</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>发送中 %1%</source>
        <translation>Sending %1%</translation>
    </message>
    <message>
        <source>发送到 %1（%2）：%3</source>
        <translation>Send to %1 (%2): %3</translation>
    </message>
</context>
<context>
    <name>FleetSendJob</name>
    <message>
        <source>未发送：未同意覆盖</source>
        <translation>Not sent: replacing was declined</translation>
    </message>
    <message>
        <source>无法读取机床文件夹，未发送</source>
        <translation>Not sent: the machine folder could not be read</translation>
    </message>
    <message>
        <source>已发送 %1 个程序</source>
        <translation>Sent %1 program(s)</translation>
    </message>
    <message>
        <source>已取消</source>
        <translation>Cancelled</translation>
    </message>
    <message>
        <source>失败：%1</source>
        <translation>Failed: %1</translation>
    </message>
    <message>
        <source>已发送 %1 个程序，%2 个被拒绝：%3</source>
        <translation>Sent %1 program(s), %2 refused: %3</translation>
    </message>
</context>
<context>
    <name>FolderSync</name>
    <message>
        <source>当前有其他传输任务进行中，请稍后再试</source>
        <translation>Other transfers are running. Please try again later.</translation>
    </message>
    <message>
        <source>请先选择有效的同步目录</source>
        <translation>Please open the folders to synchronise first</translation>
    </message>
    <message>
        <source>本地电脑当前处于根目录，不进行同步操作</source>
        <translation>The local side shows a drive root; it is not synchronised</translation>
    </message>
</context>
<context>
    <name>FolderSyncJob</name>
    <message>
        <source>同步失败：无法读取机床文件夹 %1（%2）</source>
        <translation>Synchronisation failed: cannot read the machine folder %1 (%2)</translation>
    </message>
    <message>
        <source>同步已取消</source>
        <translation>Synchronisation cancelled</translation>
    </message>
    <message>
        <source>当前目录已同步，无需操作</source>
        <translation>The folders are already in sync</translation>
    </message>
    <message>
        <source>%1（无法创建本地文件夹）</source>
        <translation>%1 (cannot create the local folder)</translation>
    </message>
    <message>
        <source>%1（无法创建机床文件夹：%2）</source>
        <translation>%1 (cannot create the machine folder: %2)</translation>
    </message>
    <message>
        <source>同步开始：计划上传 %1 个, 计划下载 %2 个, 总任务 %3个</source>
        <translation>Synchronisation started: %1 to upload, %2 to download, %3 in all</translation>
    </message>
    <message>
        <source>%1（%2）</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>同步结果：成功 %1 个，失败 %2 个，跳过 %3 个</source>
        <translation>Synchronisation result: %1 done, %2 failed, %3 skipped</translation>
    </message>
    <message>
        <source>同步完成</source>
        <translation>Synchronisation done</translation>
    </message>
    <message>
        <source>同步失败文件：%1</source>
        <translation>Not synchronised: %1</translation>
    </message>
    <message>
        <source>同步失败：%1 个文件传输失败</source>
        <translation>Synchronisation failed: %1 files could not be transferred</translation>
    </message>
    <message>
        <source>%1 个文件传输失败</source>
        <translation>%1 files failed</translation>
    </message>
    <message>
        <source>同步已中断：与机床断开连接</source>
        <translation>Synchronisation stopped: the machine is disconnected</translation>
    </message>
    <message>
        <source>%1 个文件未同步，机床恢复连接后再次同步只会传输缺少的文件</source>
        <translation>%1 files were not synchronised; once the machine is back, synchronising again sends only what is missing</translation>
    </message>
    <message>
        <source>未参与同步 %1 个文件：%2 个不是机床程序类型，%3 个为隐藏文件</source>
        <translation>%1 files took no part: %2 are not machine program types, %3 are hidden</translation>
    </message>
</context>
<context>
    <name>FolderSyncPreviewDialog</name>
    <message>
        <source>同步前预览</source>
        <translation>Synchronisation preview</translation>
    </message>
    <message>
        <source>文件</source>
        <translation>File</translation>
    </message>
    <message>
        <source>操作</source>
        <translation>Actions</translation>
    </message>
    <message>
        <source>本地</source>
        <translation>Local</translation>
    </message>
    <message>
        <source>机床</source>
        <translation>Machine</translation>
    </message>
    <message>
        <source>新建机床文件夹</source>
        <translation>New machine folder</translation>
    </message>
    <message>
        <source>新建本地文件夹</source>
        <translation>New local folder</translation>
    </message>
    <message>
        <source>上传</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>下载</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>保存本地版本</source>
        <translation>Keep local version</translation>
    </message>
    <message>
        <source>保存机床版本</source>
        <translation>Keep machine version</translation>
    </message>
    <message>
        <source>跳过</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>开始同步</source>
        <translation>Start synchronisation</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>以下操作将在确认后执行，取消勾选的项目不会传输：</source>
        <translation>These operations run once you confirm; unticked items are not transferred:</translation>
    </message>
</context>
<context>
    <name>FtpTask</name>
    <message>
        <source>不能删除根目录</source>
        <translation>The root folder cannot be deleted</translation>
    </message>
    <message>
        <source>删除已停止</source>
        <translation>Deleting stopped</translation>
    </message>
    <message>
        <source>%1上有%2项删除失败：%3</source>
        <translation>%2 items could not be deleted on %1: %3</translation>
    </message>
    <message>
        <source>无法在%1创建文件：%2</source>
        <translation>Cannot create a file in %1: %2</translation>
    </message>
    <message>
        <source>写入本地文件失败：%1</source>
        <translation>Writing the local file failed: %1</translation>
    </message>
    <message>
        <source>无法保存文件：%1</source>
        <translation>Cannot save the file: %1</translation>
    </message>
    <message>
        <source>文件名“%1”超过机床允许的长度（最多%2个字符）</source>
        <translation>The name &quot;%1&quot; is longer than the machine allows (at most %2 characters)</translation>
    </message>
    <message>
        <source>机床的文件名字符规则无效：%1</source>
        <translation>The machine&apos;s file-name character rule is not valid: %1</translation>
    </message>
    <message>
        <source>文件名“%1”含有机床不允许的字符（只允许：%2）</source>
        <translation>The name &quot;%1&quot; has characters the machine does not allow (allowed: %2)</translation>
    </message>
    <message>
        <source>机床不区分文件名大小写，“%1”与已有的“%2”冲突</source>
        <translation>The machine ignores the case of names: &quot;%1&quot; collides with the existing &quot;%2&quot;</translation>
    </message>
    <message>
        <source>服务器存储空间不足</source>
        <translation>The server is out of space</translation>
    </message>
    <message>
        <source>机床暂时无法写入（存储空间不足或文件正被使用）</source>
        <translation>The machine cannot write now (out of space or the file is in use)</translation>
    </message>
    <message>
        <source>机床的FTP连接数已满</source>
        <translation>The machine accepts no more FTP connections</translation>
    </message>
    <message>
        <source>FTP登录被拒绝，请检查用户名和密码</source>
        <translation>The FTP login was refused. Check the user name and password.</translation>
    </message>
    <message>
        <source>无法连接FTP服务器</source>
        <translation>Cannot connect to the FTP server</translation>
    </message>
    <message>
        <source>FTP服务器响应超时</source>
        <translation>The FTP server did not answer in time</translation>
    </message>
    <message>
        <source>远程文件不存在</source>
        <translation>The remote file does not exist</translation>
    </message>
    <message>
        <source>远程路径不存在或没有权限</source>
        <translation>The remote path does not exist or is not accessible</translation>
    </message>
    <message>
        <source>服务器拒绝写入文件</source>
        <translation>The server refused to write the file</translation>
    </message>
    <message>
        <source>服务器拒绝了命令</source>
        <translation>The server refused the command</translation>
    </message>
    <message>
        <source>FTP连接中断</source>
        <translation>The FTP connection was interrupted</translation>
    </message>
    <message>
        <source>FTP错误（代码%1）</source>
        <translation>FTP error (code %1)</translation>
    </message>
    <message>
        <source>无法初始化FTP连接</source>
        <translation>Cannot set up the FTP connection</translation>
    </message>
    <message>
        <source>%1已停止</source>
        <translation>%1 stopped</translation>
    </message>
    <message>
        <source>%1失败：%2</source>
        <translation>%1 failed: %2</translation>
    </message>
    <message>
        <source>（服务器回复：%1）</source>
        <translation> (server reply: %1)</translation>
    </message>
    <message>
        <source>连接FTP服务器</source>
        <translation>Connection to the FTP server</translation>
    </message>
    <message>
        <source>路径含有非法字符：%1</source>
        <translation>The path has characters that are not allowed: %1</translation>
    </message>
    <message>
        <source>获取文件列表</source>
        <translation>Listing</translation>
    </message>
    <message>
        <source>机床返回的文件名不是%1编码，请在“新建连接”中为该机床选择文件名编码（如GBK或Shift-JIS）</source>
        <translation>The machine&apos;s file names are not %1. Choose its file-name encoding (such as GBK or Shift-JIS) in &quot;New connection&quot;.</translation>
    </message>
    <message>
        <source>上传文件</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>读取本地文件失败：%1</source>
        <translation>Reading the local file failed: %1</translation>
    </message>
    <message>
        <source>下载文件</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>机床上找不到刚上传的文件：%1</source>
        <translation>The file just uploaded is not on the machine: %1</translation>
    </message>
    <message>
        <source>无效的FTP地址：%1</source>
        <translation>Not a valid FTP address: %1</translation>
    </message>
    <message>
        <source>操作已停止</source>
        <translation>Stopped</translation>
    </message>
    <message>
        <source>未指定重命名的路径</source>
        <translation>No path was given for the rename</translation>
    </message>
    <message>
        <source>无法打开本地文件：%1（%2）</source>
        <translation>Cannot open the local file: %1 (%2)</translation>
    </message>
    <message>
        <source>机床上的文件只有%1字节，本地文件为%2字节（虽然机床回复传输完成），原文件未改动</source>
        <translation>The file on the machine has only %1 bytes, the local file %2 (although the machine reported success); the old file is unchanged</translation>
    </message>
    <message>
        <source>文件名“%1”不是机床要求的8.3格式（主名最多8个字符，扩展名最多3个字符）</source>
        <translation>The name &quot;%1&quot; is not in the 8.3 form the machine requires (at most 8 characters, then at most 3 after the dot)</translation>
    </message>
    <message>
        <source>机床拒绝了被动模式，主动模式也未成功</source>
        <translation>The machine refused passive mode, and active mode did not work either</translation>
    </message>
    <message>
        <source>机床拒绝了被动模式</source>
        <translation>The machine refused passive mode</translation>
    </message>
    <message>
        <source>机床回复之前连接已中断，结果未知</source>
        <translation>The connection broke before the machine answered; the outcome is unknown</translation>
    </message>
    <message>
        <source>机床返回的文件名是UTF-8编码，与所选的%1不符，请在“新建连接”中为该机床选择UTF-8</source>
        <translation>The machine sends file names in UTF-8, not in the chosen %1: choose UTF-8 for this machine in &quot;New connection&quot;</translation>
    </message>
    <message>
        <source>无法确认下载是否完整：%1</source>
        <translation>Could not confirm that the download is complete: %1</translation>
    </message>
    <message>
        <source>只收到%1字节，机床上的文件为%2字节（虽然机床回复传输完成）</source>
        <translation>Only %1 bytes arrived; the file on the machine has %2 bytes (although the machine reported the transfer complete)</translation>
    </message>
</context>
<context>
    <name>HistoryController</name>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>当前未与机床进行连接！</source>
        <translation>No machine is connected.</translation>
    </message>
</context>
<context>
    <name>HistoryStore</name>
    <message>
        <source>无法创建历史版本文件夹：%1</source>
        <translation>Cannot create the history folder: %1</translation>
    </message>
    <message>
        <source>无法打开历史版本记录：%1</source>
        <translation>Cannot open the history: %1</translation>
    </message>
    <message>
        <source>历史版本记录正被另一个运行中的工作台使用：%1</source>
        <translation>The history is in use by another running workbench: %1</translation>
    </message>
    <message>
        <source>历史版本记录已损坏，未作任何改动：%1（%2）</source>
        <translation>The history is damaged and was left as it is: %1 (%2)</translation>
    </message>
</context>
<context>
    <name>HostWindow</name>
    <message>
        <source>Korv CAM</source>
        <translation>Korv CAM</translation>
    </message>
</context>
<context>
    <name>MachineCommandSender</name>
    <message>
        <source>启动</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>停止</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>复位</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>设为加工程序</source>
        <translation>Set as program</translation>
    </message>
    <message>
        <source>%1命令未发送：当前未与机床进行连接！</source>
        <translation>%1 was not sent: no machine is connected.</translation>
    </message>
    <message>
        <source>启动命令未发送：机床未加载加工程序</source>
        <translation>Start was not sent: the machine has no program loaded</translation>
    </message>
    <message>
        <source>启动命令未发送：机床不在等待状态</source>
        <translation>Start was not sent: the machine is not waiting</translation>
    </message>
    <message>
        <source>确定启动加工程序 &quot;%1&quot; 吗？</source>
        <translation>Start the program &quot;%1&quot;?</translation>
    </message>
    <message>
        <source>确定复位机床吗？复位将清除报警并使程序回到第一行。</source>
        <translation>Reset the machine? This clears the alarms and moves the program back to its first line.</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>%1命令发送失败：与机床的连接不可用</source>
        <translation>%1 could not be sent: the connection to the machine is not available</translation>
    </message>
    <message>
        <source>%1命令已执行</source>
        <translation>%1 done</translation>
    </message>
    <message>
        <source>%1命令失败：%2</source>
        <translation>%1 failed: %2</translation>
    </message>
    <message>
        <source>机床无应答</source>
        <translation>The machine did not answer</translation>
    </message>
</context>
<context>
    <name>MachineConnection</name>
    <message>
        <source>正在连接机床，请稍候...</source>
        <translation>Connecting to the machine, please wait...</translation>
    </message>
    <message>
        <source>连接机床失败，IP: %1</source>
        <translation>Could not connect to the machine, IP: %1</translation>
    </message>
    <message>
        <source>连接机床失败，请检查网络连接和机床IP地址！</source>
        <translation>Could not connect to the machine. Check the network and the machine&apos;s IP address.</translation>
    </message>
    <message>
        <source>机床连接成功，IP: %1, SN: %2</source>
        <translation>Machine connected, IP: %1, SN: %2</translation>
    </message>
    <message>
        <source>机床系统版本: 当前版本 %1  最低要求版本 %2</source>
        <translation>Machine system version: %1, required at least %2</translation>
    </message>
    <message>
        <source>机床重连成功，IP: %1, SN: %2</source>
        <translation>Machine reconnected, IP: %1, SN: %2</translation>
    </message>
    <message>
        <source>机床连接失败，重新连接中，次数：%1</source>
        <translation>Machine connection lost, reconnecting, attempt %1</translation>
    </message>
    <message>
        <source>超过最大重连次数，机床已断开连接</source>
        <translation>Too many failed attempts; the machine is disconnected</translation>
    </message>
    <message>
        <source>机床切换为Type-C连接，IP: %1, SN: %2</source>
        <translation>Machine switched to its USB-C connection, IP: %1, SN: %2</translation>
    </message>
    <message>
        <source>实时数据刷新间隔“%1”无效，已改为%2毫秒</source>
        <translation>Real-time refresh interval &quot;%1&quot; is not valid; using %2 ms</translation>
    </message>
    <message>
        <source>断开与机床（IP: %1）的连接，改为连接 %2</source>
        <translation>Ending the connection to the machine (IP: %1) to connect to %2</translation>
    </message>
</context>
<context>
    <name>MachineCopyCompare</name>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>无法读取机床当前版本：%1</source>
        <translation>Cannot read the machine&apos;s current copy: %1</translation>
    </message>
    <message>
        <source>机床当前版本：%1</source>
        <translation>Machine&apos;s current copy: %1</translation>
    </message>
</context>
<context>
    <name>MachineFileService</name>
    <message>
        <source>当前未与机床进行连接！</source>
        <translation>No machine is connected.</translation>
    </message>
    <message>
        <source>文件类型不符合要求：%1</source>
        <translation>This file type cannot be used: %1</translation>
    </message>
    <message>
        <source>当前选择上传的文件名称以&quot;.&quot;开头，请更改名称后重试！</source>
        <translation>The file to upload has a name starting with &quot;.&quot;. Rename it and try again.</translation>
    </message>
    <message>
        <source>机床文件名称不能用作本地文件名：%1</source>
        <translation>The machine file name cannot be used as a local file name: %1</translation>
    </message>
    <message>
        <source>当前文件正在被操作：%1</source>
        <translation>The file is in use by another transfer: %1</translation>
    </message>
    <message>
        <source>机床正在运行程序%1，不能覆盖、删除或重命名：%2</source>
        <translation>The machine is running %1; it cannot be overwritten, deleted or renamed: %2</translation>
    </message>
    <message>
        <source>当前FTP正在进行文件传输，请稍后再试</source>
        <translation>A file transfer is running. Please try again later.</translation>
    </message>
    <message>
        <source>当前文件夹正在被操作：%1</source>
        <translation>The folder is in use by another transfer: %1</translation>
    </message>
    <message>
        <source>无法读取机床文件夹，未传输任何文件</source>
        <translation>Could not read the machine folder; no file was sent</translation>
    </message>
    <message>
        <source>开始上传文件：%1</source>
        <translation>Uploading: %1</translation>
    </message>
    <message>
        <source>开始下载文件：%1</source>
        <translation>Downloading: %1</translation>
    </message>
    <message>
        <source>上传文件完成：%1</source>
        <translation>Uploaded: %1</translation>
    </message>
    <message>
        <source>上传文件失败：%1</source>
        <translation>Upload failed: %1</translation>
    </message>
    <message>
        <source>下载文件完成：%1</source>
        <translation>Downloaded: %1</translation>
    </message>
    <message>
        <source>下载文件失败：%1</source>
        <translation>Download failed: %1</translation>
    </message>
    <message>
        <source>机床最多同时接受%1个FTP连接，其余传输将排队进行</source>
        <translation>The machine accepts at most %1 FTP connections at once; the other transfers wait their turn</translation>
    </message>
    <message>
        <source>没有可重试的传输</source>
        <translation>There is no transfer to retry</translation>
    </message>
    <message>
        <source>删除文件夹</source>
        <translation>Delete folder</translation>
    </message>
    <message>
        <source>删除文件</source>
        <translation>Delete file</translation>
    </message>
    <message>
        <source>正在删除文件夹，请稍候</source>
        <translation>Deleting the folder, please wait</translation>
    </message>
    <message>
        <source>正在删除文件，请稍候</source>
        <translation>Deleting the file, please wait</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>正在删除，请稍候</source>
        <translation>Deleting, please wait</translation>
    </message>
    <message>
        <source>无法创建文件夹：%1</source>
        <translation>Could not create the folder: %1</translation>
    </message>
    <message>
        <source>无法写入文件：%1</source>
        <translation>Could not write the file: %1</translation>
    </message>
    <message>
        <source>已取消上传文件：%1</source>
        <translation>Upload cancelled: %1</translation>
    </message>
    <message>
        <source>已取消下载文件：%1</source>
        <translation>Download cancelled: %1</translation>
    </message>
    <message>
        <source>已删除中断的上传留下的临时文件：%1</source>
        <translation>Deleted temporary files left by interrupted uploads: %1</translation>
    </message>
    <message>
        <source>文件夹不能直接传输：%1。请打开文件夹选择其中的程序，或使用“同步”</source>
        <translation>A folder is not sent as a whole: %1. Open it and select its programs, or use &quot;Sync&quot;.</translation>
    </message>
</context>
<context>
    <name>MachineListingSource</name>
    <message>
        <source>当前FTP正在进行文件传输，无法访问机器文件！</source>
        <translation>A file transfer is running; the machine&apos;s files cannot be opened now.</translation>
    </message>
</context>
<context>
    <name>MachineStatusFileActionWidget</name>
    <message>
        <source>重命名</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>设为加工程序</source>
        <translation>Set as program</translation>
    </message>
    <message>
        <source>历史版本…</source>
        <translation>History…</translation>
    </message>
    <message>
        <source>历史</source>
        <translation>History</translation>
    </message>
</context>
<context>
    <name>MachineStatusProgramPanel</name>
    <message>
        <source>当前程序</source>
        <translation>Current program</translation>
    </message>
    <message>
        <source>文件列表</source>
        <translation>Files</translation>
    </message>
    <message>
        <source>程序</source>
        <translation>Program</translation>
    </message>
    <message>
        <source>已用</source>
        <translation>Used</translation>
    </message>
    <message>
        <source>剩余</source>
        <translation>Time left</translation>
    </message>
    <message>
        <source>文件名称</source>
        <translation>File name</translation>
    </message>
    <message>
        <source>修改日期</source>
        <translation>Modified</translation>
    </message>
    <message>
        <source>操作</source>
        <translation>Actions</translation>
    </message>
    <message>
        <source>加载中</source>
        <translation>Loading</translation>
    </message>
    <message>
        <source>获取机床文件列表失败，请检查机床连接后重试！</source>
        <translation>Could not list the machine&apos;s files. Check the connection and try again.</translation>
    </message>
    <message>
        <source>无文件</source>
        <translation>No files</translation>
    </message>
    <message>
        <source>同级目录下已存在相同名称的条目！</source>
        <translation>An item with this name already exists in this folder.</translation>
    </message>
    <message>
        <source>重命名失败，请稍后重试！</source>
        <translation>Renaming failed. Please try again later.</translation>
    </message>
    <message>
        <source>确定删除文件夹 &quot;%1&quot; 及其全部内容吗？</source>
        <translation>Delete the folder &quot;%1&quot; and everything in it?</translation>
    </message>
    <message>
        <source>确定删除文件 &quot;%1&quot; 吗？</source>
        <translation>Delete the file &quot;%1&quot;?</translation>
    </message>
    <message>
        <source>删除失败，请稍后重试！</source>
        <translation>Deleting failed. Please try again later.</translation>
    </message>
    <message>
        <source>机床无法运行此类型的文件：%1</source>
        <translation>The machine cannot run this type of file: %1</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>加载中...</source>
        <translation>Loading...</translation>
    </message>
</context>
<context>
    <name>MachineStatusWidget</name>
    <message>
        <source>设备未连接</source>
        <translation>No machine connected</translation>
    </message>
    <message>
        <source>启动</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>停止</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>复位</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>运行时长：</source>
        <translation>Run time:</translation>
    </message>
    <message>
        <source>0分00秒</source>
        <translation>0 min 00 s</translation>
    </message>
    <message>
        <source>离线</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>进给 / 主轴</source>
        <translation>Feed / Spindle</translation>
    </message>
    <message>
        <source>主轴温度</source>
        <translation>Spindle temp.</translation>
    </message>
    <message>
        <source>------- °C</source>
        <translation>------- °C</translation>
    </message>
    <message>
        <source>进给速度</source>
        <translation>Feed rate</translation>
    </message>
    <message>
        <source>0.00</source>
        <translation>0.00</translation>
    </message>
    <message>
        <source>主轴转速</source>
        <translation>Spindle speed</translation>
    </message>
    <message>
        <source>坐标</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>机械坐标</source>
        <translation>Machine</translation>
    </message>
    <message>
        <source>工件坐标</source>
        <translation>Work</translation>
    </message>
    <message>
        <source>轴</source>
        <translation>Axis</translation>
    </message>
    <message>
        <source>位置</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>剩余距离</source>
        <translation>To go</translation>
    </message>
    <message>
        <source>单位</source>
        <translation>Unit</translation>
    </message>
    <message>
        <source>负载</source>
        <translation>Load</translation>
    </message>
    <message>
        <source>主轴</source>
        <translation>Spindle</translation>
    </message>
    <message>
        <source>0.0%</source>
        <translation>0.0%</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>Z</source>
        <translation>Z</translation>
    </message>
    <message>
        <source>A</source>
        <translation>A</translation>
    </message>
    <message>
        <source>C</source>
        <translation>C</translation>
    </message>
    <message>
        <source>当前刀具</source>
        <translation>Current tool</translation>
    </message>
    <message>
        <source>#--</source>
        <translation>#--</translation>
    </message>
    <message>
        <source>----</source>
        <translation>----</translation>
    </message>
    <message>
        <source>直径</source>
        <translation>Diameter</translation>
    </message>
    <message>
        <source>0.0</source>
        <translation>0.0</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
    <message>
        <source>长度补偿</source>
        <translation>Length offset</translation>
    </message>
    <message>
        <source>0.0000</source>
        <translation>0.0000</translation>
    </message>
    <message>
        <source>半径补偿</source>
        <translation>Radius offset</translation>
    </message>
    <message>
        <source>运行中</source>
        <translation>Running</translation>
    </message>
    <message>
        <source>异常</source>
        <translation>Fault</translation>
    </message>
    <message>
        <source>等待</source>
        <translation>Waiting</translation>
    </message>
    <message>
        <source>禁止</source>
        <translation>Disabled</translation>
    </message>
    <message>
        <source>%1分%2秒</source>
        <translation>%1 min %2 s</translation>
    </message>
    <message>
        <source>%1时%2分%3秒</source>
        <translation>%1 h %2 min %3 s</translation>
    </message>
    <message>
        <source>数据已过期 %1</source>
        <translation>Data out of date %1</translation>
    </message>
    <message>
        <source>自 %1 起未收到机床数据</source>
        <translation>No data from the machine since %1</translation>
    </message>
    <message>
        <source>机床异常，请检查机床</source>
        <translation>Machine fault, please check the machine</translation>
    </message>
    <message>
        <source>报警：%1</source>
        <translation>Alarm: %1</translation>
    </message>
</context>
<context>
    <name>OverwriteQuestion</name>
    <message>
        <source>%1（%2）
    新：%3
    旧：%4</source>
        <translation>%1 (%2)
    new: %3
    old: %4</translation>
    </message>
    <message>
        <source>机床</source>
        <translation>Machine</translation>
    </message>
    <message>
        <source>本地</source>
        <translation>Local</translation>
    </message>
    <message>
        <source>……另有 %1 个文件</source>
        <translation>... and %1 more files</translation>
    </message>
    <message>
        <source>目标路径已包含同名文件：%1，是否覆盖？</source>
        <translation>The destination already has a file named %1. Overwrite it?</translation>
    </message>
</context>
<context>
    <name>PanelManager</name>
    <message>
        <source>PanelManager</source>
        <translation>PanelManager</translation>
    </message>
</context>
<context>
    <name>ProgramCompareDialog</name>
    <message>
        <source>忽略空白</source>
        <translation>Ignore white space</translation>
    </message>
    <message>
        <source>忽略注释</source>
        <translation>Ignore comments</translation>
    </message>
    <message>
        <source>忽略程序段号</source>
        <translation>Ignore block numbers</translation>
    </message>
    <message>
        <source>比较</source>
        <translation>Compare</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>内容相同</source>
        <translation>Identical</translation>
    </message>
    <message>
        <source>%1 行不同</source>
        <translation>%1 lines differ</translation>
    </message>
    <message>
        <source>正在比较…</source>
        <translation>Comparing…</translation>
    </message>
</context>
<context>
    <name>ProgramHistory</name>
    <message>
        <source>无法保留%1的历史版本，未作改动：%2</source>
        <translation>Cannot keep the history of %1; nothing was changed: %2</translation>
    </message>
    <message>
        <source>无法读取机床文件夹，未能保留%1的历史版本，未作改动</source>
        <translation>Cannot read the machine folder, so the history of %1 was not kept; nothing was changed</translation>
    </message>
    <message>
        <source>%1超过历史版本的大小上限，不保留历史版本</source>
        <translation>%1 is larger than the history size limit; no copy is kept</translation>
    </message>
    <message>
        <source>无法从机床取回%1的当前版本，未作改动：%2</source>
        <translation>Cannot fetch the current copy of %1 from the machine; nothing was changed: %2</translation>
    </message>
    <message>
        <source>读取失败</source>
        <translation>read failed</translation>
    </message>
    <message>
        <source>无法保存%1的历史版本，未作改动</source>
        <translation>Cannot save the history of %1; nothing was changed</translation>
    </message>
    <message>
        <source>历史版本清理失败：%1</source>
        <translation>Cleaning up the history failed: %1</translation>
    </message>
    <message>
        <source>无法读取历史版本：%1</source>
        <translation>Cannot read the kept version: %1</translation>
    </message>
</context>
<context>
    <name>ProgramHistoryDialog</name>
    <message>
        <source>版本 %1（%2）</source>
        <translation>Version %1 (%2)</translation>
    </message>
    <message>
        <source>比较所选版本</source>
        <translation>Compare selected</translation>
    </message>
    <message>
        <source>与机床当前版本比较</source>
        <translation>Compare with machine</translation>
    </message>
    <message>
        <source>恢复此版本</source>
        <translation>Restore this version</translation>
    </message>
    <message>
        <source>历史版本</source>
        <translation>Program history</translation>
    </message>
    <message>
        <source>程序</source>
        <translation>Program</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>State</translation>
    </message>
    <message>
        <source>版本</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>保存时间</source>
        <translation>Saved</translation>
    </message>
    <message>
        <source>大小</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>替换原因</source>
        <translation>Replaced by</translation>
    </message>
    <message>
        <source>替换或删除前保留此机床程序的历史版本</source>
        <translation>Keep this machine&apos;s programs before replacing or deleting them</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>已从机床删除</source>
        <translation>Deleted from the machine</translation>
    </message>
    <message>
        <source>已删除</source>
        <translation>Deleted</translation>
    </message>
    <message>
        <source>被 %1 覆盖</source>
        <translation>Replaced by %1</translation>
    </message>
    <message>
        <source>被 %1 重命名覆盖</source>
        <translation>Renamed over by %1</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>用%1替换机床上的%2？机床当前的程序会先保留为历史版本。</source>
        <translation>Replace %2 on the machine with %1? The machine's current program is kept as a version first.</translation>
    </message>
</context>
<context>
    <name>ScenePainter</name>
    <message>
        <source>右</source>
        <translation>R</translation>
    </message>
    <message>
        <source>左</source>
        <translation>L</translation>
    </message>
    <message>
        <source>后</source>
        <translation>B</translation>
    </message>
    <message>
        <source>前</source>
        <translation>F</translation>
    </message>
    <message>
        <source>上</source>
        <translation>T</translation>
    </message>
    <message>
        <source>下</source>
        <translation>D</translation>
    </message>
</context>
<context>
    <name>SerialNumberReader</name>
    <message>
        <source>获取机床序列号失败</source>
        <translation>Could not read the machine&apos;s serial number</translation>
    </message>
    <message>
        <source>获取机床序列号失败：%1</source>
        <translation>Could not read the machine&apos;s serial number: %1</translation>
    </message>
    <message>
        <source>获取机床序列号失败：序列号为空</source>
        <translation>Could not read the machine&apos;s serial number: it is empty</translation>
    </message>
    <message>
        <source>获取机床序列号失败：网络连接错误</source>
        <translation>Could not read the machine&apos;s serial number: network error</translation>
    </message>
    <message>
        <source>获取机床序列号失败：连接超时</source>
        <translation>Could not read the machine&apos;s serial number: timed out</translation>
    </message>
</context>
<context>
    <name>SilentConnector</name>
    <message>
        <source>正在查找上次连接的机床，SN: %1</source>
        <translation>Looking for the last machine, SN: %1</translation>
    </message>
    <message>
        <source>未找到上次连接的机床，SN: %1，请使用“新建连接”选择机床</source>
        <translation>The last machine (SN: %1) was not found; use &quot;New connection&quot; to choose a machine</translation>
    </message>
</context>
<context>
    <name>SyncButtonLook</name>
    <message>
        <source>同步中...</source>
        <translation>Syncing...</translation>
    </message>
    <message>
        <source>同步文件夹</source>
        <translation>Sync folders</translation>
    </message>
</context>
<context>
    <name>ToolPage</name>
    <message>
        <source>功能</source>
        <translation>Functions</translation>
    </message>
    <message>
        <source>连接</source>
        <translation>Connection</translation>
    </message>
    <message>
        <source>新建连接</source>
        <translation>New connection</translation>
    </message>
    <message>
        <source>断开连接</source>
        <translation>Disconnect</translation>
    </message>
    <message>
        <source>信息</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>绑定设备</source>
        <translation>Bind device</translation>
    </message>
    <message>
        <source>解绑设备</source>
        <translation>Unbind device</translation>
    </message>
    <message>
        <source>显示</source>
        <translation>View</translation>
    </message>
    <message>
        <source>设备状态</source>
        <translation>Machine status</translation>
    </message>
    <message>
        <source>文件传输</source>
        <translation>Transfers</translation>
    </message>
    <message>
        <source>同步</source>
        <translation>Sync</translation>
    </message>
    <message>
        <source>同步文件夹</source>
        <translation>Sync folders</translation>
    </message>
</context>
<context>
    <name>TransInfo</name>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>信息</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>清空日志</source>
        <translation>Clear log</translation>
    </message>
</context>
<context>
    <name>TransList</name>
    <message>
        <source>传输列表</source>
        <translation>Transfer list</translation>
    </message>
    <message>
        <source>全部开始</source>
        <translation>Start all</translation>
    </message>
    <message>
        <source>全部暂停</source>
        <translation>Pause all</translation>
    </message>
    <message>
        <source>清空</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>等待中</source>
        <translation>Waiting</translation>
    </message>
    <message>
        <source>文件</source>
        <translation>File</translation>
    </message>
    <message>
        <source>进度</source>
        <translation>Progress</translation>
    </message>
    <message>
        <source>Varnok路径</source>
        <translation>Varnok path</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>已取消</source>
        <translation>Cancelled</translation>
    </message>
    <message>
        <source>取消传输</source>
        <translation>Cancel transfer</translation>
    </message>
    <message>
        <source>重新传输</source>
        <translation>Retry transfer</translation>
    </message>
    <message>
        <source>打开所在文件夹</source>
        <translation>Open containing folder</translation>
    </message>
</context>
<context>
    <name>TransProgressPainter</name>
    <message>
        <source>传输失败</source>
        <translation>Failed</translation>
    </message>
    <message>
        <source>传输成功</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>已取消</source>
        <translation>Cancelled</translation>
    </message>
</context>
<context>
    <name>VerificationImageWindow</name>
    <message>
        <source>安全验证</source>
        <translation>Security check</translation>
    </message>
    <message>
        <source>请输入下图中的字符</source>
        <translation>Enter the characters shown in the picture</translation>
    </message>
    <message>
        <source>换一张</source>
        <translation>New picture</translation>
    </message>
    <message>
        <source>输入验证码</source>
        <translation>Enter the code</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>获取验证码图片失败</source>
        <translation>Could not get the picture</translation>
    </message>
    <message>
        <source>正在获取验证码图片...</source>
        <translation>Getting the picture...</translation>
    </message>
</context>
<context>
    <name>Workspace</name>
    <message>
        <source>文件传输</source>
        <translation>Transfers</translation>
    </message>
    <message>
        <source>传输日志</source>
        <translation>Transfer log</translation>
    </message>
    <message>
        <source>设备状态</source>
        <translation>Machine status</translation>
    </message>
    <message>
        <source>当前机床系统版本为 %1，低于最低要求版本 %2，部分功能可能会受到影响，请升级机床系统版本！</source>
        <translation>The machine&apos;s system version is %1, older than the required %2. Some functions may not work; please update the machine&apos;s system.</translation>
    </message>
    <message>
        <source>不再提醒</source>
        <translation>Don&apos;t remind me again</translation>
    </message>
    <message>
        <source>机床断开连接</source>
        <translation>Machine disconnected</translation>
    </message>
    <message>
        <source>与当前设备已断开连接，请检查网络！</source>
        <translation>The machine is disconnected. Please check the network.</translation>
    </message>
    <message>
        <source>与当前设备已断开连接！</source>
        <translation>The machine is disconnected.</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>机床总览</source>
        <translation>Machines</translation>
    </message>
</context>
</TS>
