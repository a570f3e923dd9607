<?xml version="1.0"?>
<!-- The same nodes processed in two modes: a table of contents and a body. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="/manual">
    <book title="{@title}">
      <toc><xsl:apply-templates select="chapter" mode="toc"/></toc>
      <body><xsl:apply-templates select="chapter"/></body>
    </book>
  </xsl:template>
  <xsl:template match="chapter | section" mode="toc">
    <entry ref="{@id}" level="{count(ancestor::*)}">
      <xsl:value-of select="heading"/>
      <xsl:apply-templates select="section" mode="toc"/>
    </entry>
  </xsl:template>
  <xsl:template match="chapter | section">
    <div id="{@id}"><xsl:apply-templates/></div>
  </xsl:template>
  <xsl:template match="heading"><h><xsl:apply-templates/></h></xsl:template>
  <xsl:template match="para"><p><xsl:apply-templates/></p></xsl:template>
  <xsl:template match="em"><i><xsl:apply-templates/></i></xsl:template>
  <xsl:template match="em" mode="toc"/>
</xsl:stylesheet>
